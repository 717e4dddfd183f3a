#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <array>
#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/practice.h"
#include "gui/support/program.h"
#include "support/printing.h"
#include "ui/main_window/data_frame.h"
#include "ui/status_lamp.h"

namespace kartocheck::test {
namespace {

// Of the card's rows; the supplement's come behind them.
using Values = std::array<const char16_t*, 16>;

constexpr Values Anne{u"AOK Süd", u"1234567", u"123456789", u"00012", u"1000",     u"1",
                      u"",        u"Änne",    u"",          u"Größl", u"01021950", u"",
                      u"",        u"12345",   u"Köln",      u"1230"};

constexpr Values Joerg{u"BKK Beispiel Nordwest",
                       u"7654321",
                       u"987654321012",
                       u"17999",
                       u"5000",
                       u"9",
                       u"Dr.",
                       u"Jörg-Peter",
                       u"von",
                       u"Übermaß",
                       u"31121969",
                       u"Hinter den Höfen 12 a",
                       u"D",
                       u"01067",
                       u"Dresden-Löbtau",
                       u"1128"};

constexpr Values Nothing{u"", u"", u"", u"", u"", u"", u"", u"",
                         u"", u"", u"", u"", u"", u"", u"", u""};

const QStringList JoergsSupplement{QStringLiteral("05032024"), QStringLiteral("109")};

QString DataTitle(Program& program) {
  return program.Find<QGroupBox>(QStringLiteral("Fram_Show_3")).title();
}

QString StatusText(Program& program) {
  return program.Text(QStringLiteral("Labl_StatusText"));
}

void ExpectValues(Program& program, const Values& expected, const QStringList& supplement = {}) {
  for (std::size_t row = 0; row < expected.size(); ++row) {
    const auto& field = program.Find<QLabel>(QStringLiteral("Labl_Wert_%1").arg(row));
    EXPECT_EQ(field.text(), expected.at(row)) << "row " << row;
    EXPECT_EQ(field.textFormat(), Qt::PlainText);
  }
  QStringList behind;
  for (int row = static_cast<int>(expected.size()); row < DataRowCount; ++row) {
    behind << program.Text(QStringLiteral("Labl_Wert_%1").arg(row));
  }
  behind.removeAll(QString());
  EXPECT_EQ(behind, supplement);
}

QString Joined(const Values& values) {
  QString text;
  for (const auto* value : values) text += QStringView(value).toString() + u"\r\n";
  return text;
}

TEST(ReadCardTest, ShowsTheDataOfAKvk) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));

  EXPECT_TRUE(program.Find(QStringLiteral("Fram_Show_3")).isVisible());
  EXPECT_EQ(DataTitle(program), u"Krankenversicherten Kartendaten(Karte)");
  ExpectValues(program, Anne);
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Name_3")), u"VKNR:");
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Name_15")), u"Gültigkeitsdatum:");
  EXPECT_EQ(StatusText(program), u"Die Krankenversichertendaten werden angezeigt");
  EXPECT_EQ(program.Find<QProgressBar>(QStringLiteral("ProgressBar1")).value(), 0);
}

TEST(ReadCardTest, FillsTheStatusTabOfThePort) {
  Program program(practice::Identification(2) + practice::CardRead(2, practice::AnnesCard));
  program.Click(QStringLiteral("Opti_Comx_1"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));

  const StatusTab shown = StatusTabOf(program.module, 2);
  EXPECT_EQ(shown.at(3), u"DENRV");
  EXPECT_EQ(shown.at(4), u"PKT-S");
  for (int row = 0; row < StatusRowCount; ++row) {
    EXPECT_EQ(program.Text(QStringLiteral("Labl_Status_1_%1").arg(row)),
              shown.at(static_cast<std::size_t>(row)));
    EXPECT_EQ(program.Text(QStringLiteral("Labl_Status_0_%1").arg(row)), u"");
  }
}

TEST(ReadCardTest, ShowsARecordOfAMobileTerminalAfterTheWarning) {
  Program program(practice::MobileIdentification(3) +
                  practice::MobileRead(3, practice::JoergsRecord));
  program.Click(QStringLiteral("Opti_Comx_2"));
  BoxAnswerer user({PressButton(QMessageBox::Yes)});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));

  ASSERT_EQ(user.seen.size(), 1U);
  EXPECT_EQ(user.seen[0].preselected, u"Nein");
  EXPECT_EQ(DataTitle(program), u"Krankenversicherten Kartendaten(Mobil)");
  ExpectValues(program, Joerg, JoergsSupplement);
}

TEST(ReadCardTest, LampsFollowTheCommands) {
  struct Seen {
    LampState card;
    LampState terminal;
    QString status;
    int progress;
  };
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  const auto& card = program.Find<StatusLamp>(QStringLiteral("Shap_Lampe_0"));
  const auto& terminal = program.Find<StatusLamp>(QStringLiteral("Shap_Lampe_1"));
  const auto& progress = program.Find<QProgressBar>(QStringLiteral("ProgressBar1"));
  std::vector<Seen> seen;
  program.library.beforeExchange = [&](int /*exchange*/) {
    seen.push_back({card.State(), terminal.State(), StatusText(program), progress.value()});
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));

  constexpr auto Waiting = LampState::Waiting;
  constexpr auto Answered = LampState::Answered;
  // Two commands of the identification; request and select of the status check; reset, request,
  // card reset, select, read, reset.
  const std::vector<std::pair<LampState, LampState>> expected{
      {Answered, Waiting}, {Answered, Waiting}, {Answered, Waiting}, {Waiting, Answered},
      {Answered, Waiting}, {Answered, Waiting}, {Answered, Waiting}, {Waiting, Answered},
      {Waiting, Answered}, {Answered, Waiting},
  };
  ASSERT_EQ(seen.size(), expected.size());
  for (std::size_t step = 0; step < expected.size(); ++step) {
    EXPECT_EQ(seen[step].card, expected[step].first) << "exchange " << step;
    EXPECT_EQ(seen[step].terminal, expected[step].second) << "exchange " << step;
  }
  EXPECT_EQ(seen.front().status, u"Die Krankenversichertendaten lesen");
  EXPECT_EQ(seen.front().progress, 0);
  EXPECT_EQ(seen.back().status, u"Die Krankenversichertendaten werden gelesen");
  EXPECT_EQ(seen.back().progress, 50);
  EXPECT_EQ(card.State(), LampState::Off);
  EXPECT_EQ(terminal.State(), LampState::Off);
}

TEST(ReadCardTest, ASecondClickShowsTheSameDataWithoutReading) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  ExpectValues(program, Anne);
}

TEST(ReadCardTest, FailureShowsNothingOfTheCardBefore) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard) +
                  practice::Identification(1) + practice::NoCard(1));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("CmdB_MKt_Test_5"));
  BoxAnswerer user({PressButton(QMessageBox::Ok), PressButton(QMessageBox::No)});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));

  EXPECT_EQ(user.seen.at(1).text, u" Keine Chipkarte gefunden! \n Noch einmal versuchen? ");
  EXPECT_EQ(DataTitle(program), u"Krankenversicherten Kartendaten");
  ExpectValues(program, Nothing);
}

TEST(ReadCardTest, AnotherTryReadsTheCardThatCameMeanwhile) {
  Program program(practice::Identification(1) + practice::NoCard(1) + practice::Identification(1) +
                  practice::CardRead(1, practice::AnnesCard));
  BoxAnswerer user({PressButton(QMessageBox::Ok), PressButton(QMessageBox::Yes)});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  ExpectValues(program, Anne);
}

TEST(CopyTest, PutsTheLinesOfACardOnTheClipboard) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("CmdB_MKt_Test_4"));
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith(Joined(Anne)));
  EXPECT_EQ(StatusText(program),
            u"Die Krankenversichertendaten wurden in die Zwischenablage kopiert");
}

TEST(CopyTest, PutsTheSupplementOfAMobileTerminalThereToo) {
  Program program(practice::MobileIdentification(1) +
                  practice::MobileRead(1, practice::JoergsRecord));
  BoxAnswerer user({PressButton(QMessageBox::Yes)});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("CmdB_MKt_Test_4"));
  const QString copied = QApplication::clipboard()->text();
  EXPECT_TRUE(copied.startsWith(Joined(Joerg)));
  EXPECT_TRUE(copied.contains(JoergsSupplement.join(u"\r\n") + u"\r\n"));
}

TEST(CopyTest, ReplacesWhatTheClipboardHeld) {
  QApplication::clipboard()->setText(QStringLiteral("from before"));
  Program program;
  program.Click(QStringLiteral("CmdB_MKt_Test_4"));
  EXPECT_EQ(QApplication::clipboard()->text(), ClipboardText({}, {}));
}

TEST(ResetTest, EmptiesFieldsAndSlot) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard) +
                  practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("CmdB_MKt_Test_5"));
  ExpectValues(program, Nothing);
  EXPECT_EQ(StatusText(program), u"Die Anzeigefelder wurden zurückgesetzt");
  EXPECT_TRUE(program.module.Insured[1].IsEmpty());

  // The card is read anew: the dialogue holds a second read.
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  ExpectValues(program, Anne);
}

TEST(ResetTest, EmptiesTheFieldsThatOnlyAMobileTerminalFills) {
  Program program(practice::MobileIdentification(1) +
                  practice::MobileRead(1, practice::JoergsRecord));
  const BoxAnswerer user({PressButton(QMessageBox::Yes)});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  ASSERT_FALSE(program.Text(QStringLiteral("Labl_Wert_17")).isEmpty());
  program.Click(QStringLiteral("CmdB_MKt_Test_5"));
  ExpectValues(program, Nothing);
}

TEST(PortChoiceTest, ShowsTheDataOfTheChosenPort) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("Opti_Comx_1"));
  ExpectValues(program, Nothing);
  EXPECT_EQ(StatusText(program), u"Die serielle Schnittstelle COM 2 wurde ausgewählt");
  program.Click(QStringLiteral("Opti_Comx_0"));
  ExpectValues(program, Anne);
}

// What can be used while an action runs.
struct Usable {
  explicit Usable(Program& program)
      : panel(program.Find(QStringLiteral("Pict_MKT_Test")).isEnabled()),
        readButton(program.Find(QStringLiteral("CmdB_MKt_Test_3")).isEnabled()),
        list(program.Find(QStringLiteral("List1")).isEnabled()),
        egkInfo(program.Find(QStringLiteral("cmdeGK")).isEnabled()),
        schema(program.Find(QStringLiteral("mnuSchema")).isEnabled()),
        validation(
            program.window.findChild<QAction*>(QStringLiteral("mnuValidierung"))->isEnabled()),
        quit(program.window.findChild<QAction*>(QStringLiteral("mnuBeenden"))->isEnabled()),
        tabs(program.Find(QStringLiteral("TabStrip1")).isEnabled()),
        cursor(program.window.cursor().shape()) {
    for (int member = 0; member < 5; ++member) {
      ports += program.Find(QStringLiteral("Opti_Comx_%1").arg(member)).isEnabled() ? 1 : 0;
      portTexts += program.Find(QStringLiteral("Labe_Comx_%1").arg(member)).isEnabled() ? 1 : 0;
    }
  }

  bool panel, readButton, list, egkInfo, schema, validation, quit, tabs;
  Qt::CursorShape cursor;
  int ports = 0;
  int portTexts = 0;
};

TEST(RunningActionTest, DisablesWhateverCouldStartASecondOne) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  std::vector<Usable> during;
  program.library.beforeExchange = [&](int /*exchange*/) {
    during.emplace_back(program);
    program.Click(QStringLiteral("CmdB_MKt_Test_5"));
    program.Click(QStringLiteral("Opti_Comx_1"));
    program.Click(QStringLiteral("Labe_Comx_1"));
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));

  ASSERT_EQ(during.size(), 10U);
  for (const Usable& usable : during) {
    EXPECT_FALSE(usable.panel);
    EXPECT_FALSE(usable.readButton);
    EXPECT_FALSE(usable.list);
    EXPECT_FALSE(usable.egkInfo);
    EXPECT_FALSE(usable.schema);
    EXPECT_FALSE(usable.validation);
    EXPECT_TRUE(usable.quit);
    EXPECT_TRUE(usable.tabs);
    EXPECT_EQ(usable.ports, 0);
    EXPECT_EQ(usable.portTexts, 0);
    EXPECT_EQ(usable.cursor, Qt::BusyCursor);
  }
  ExpectValues(program, Anne);
  EXPECT_EQ(program.module.SelectedPort, Port(1));

  const Usable after(program);
  EXPECT_TRUE(after.panel);
  EXPECT_TRUE(after.readButton);
  EXPECT_EQ(after.ports, 5);
  EXPECT_EQ(after.portTexts, 5);
  EXPECT_EQ(after.cursor, Qt::ArrowCursor);
}

TEST(RunningActionTest, PortsEnabledMeanwhileShowAtItsEnd) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.library.beforeExchange = [&](int exchange) {
    if (exchange != 0) return;
    program.view.isPortEnabled[2].Set(false);
    program.view.isPortEnabled[5].Set(true);
    EXPECT_EQ(Usable(program).ports, 0);
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_FALSE(program.Find(QStringLiteral("Opti_Comx_1")).isEnabled());
  EXPECT_TRUE(program.Find(QStringLiteral("Opti_Comx_2")).isEnabled());
  EXPECT_TRUE(program.Find(QStringLiteral("Opti_Comx_4")).isEnabled());
}

TEST(RunningActionTest, TheFocusComesBackToThePressedButton) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  program.Find(QStringLiteral("CmdB_MKt_Test_3")).setFocus();
  program.Press(QStringLiteral("CmdB_MKt_Test_3"), Qt::Key_Space);
  EXPECT_EQ(QApplication::focusWidget(), &program.Find(QStringLiteral("CmdB_MKt_Test_3")));
}

TEST(RunningActionTest, TabsCanBeLookedAt) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  auto& tabs = program.Find<QTabWidget>(QStringLiteral("TabStrip1"));
  program.library.beforeExchange = [&](int exchange) {
    if (exchange != 0) return;
    (void)program.window.ShowFrameX(2);
    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(3).center());
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_EQ(tabs.currentIndex(), 3);
}

}  // namespace
}  // namespace kartocheck::test
