#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "gui/support/window_visitor.h"
#include "support/printing.h"
#include "support/system.h"
#include "ui/main_window/data_frame.h"

// The full scan, over bundled practices of simulated terminals, and what is seen of it afterwards.

namespace kartocheck::test {
namespace {

const QString ResultWindow = QStringLiteral("Form_DatenInfo");

// Reading the record of the terminal on COM 3 erases it; the USB terminal's card keeps the
// protected data to itself.
std::deque<BoxAnswerer::Step> AnswersAtThePractice() {
  return {PressButton(QMessageBox::Yes), PressButton(QMessageBox::Ok)};
}

class ScanTest : public testing::Test {
 protected:
  void Scan(const std::function<void(QWidget&)>& look = [](QWidget&) {}) {
    const WindowVisitor visitor(ResultWindow, look);
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }

  QString StatusText() { return program.Text(QStringLiteral("Labl_StatusText")); }
  QString Title() { return program.Find<QGroupBox>(QStringLiteral("Fram_Show_3")).title(); }
  QString Value(int row) { return program.Text(QStringLiteral("Labl_Wert_%1").arg(row)); }
  bool IsVisible(int frame) {
    return program.Find(QStringLiteral("Fram_Show_%1").arg(frame)).isVisible();
  }

  SimulatedProgram program{QStringLiteral("praxis")};
};

TEST_F(ScanTest, ShowsTheResultAndThenTheFirstData) {
  BoxAnswerer user(AnswersAtThePractice());
  std::array<QString, 5> rows;
  QString statusText;
  int progress = 0;
  Scan([&](QWidget& window) {
    Screen screen(window);
    for (int row = 0; row < 5; ++row) {
      rows.at(static_cast<std::size_t>(row)) =
          screen.Text(QStringLiteral("Labe_DatenInfo1_%1").arg(row));
    }
    statusText = StatusText();
    progress = program.Find<QProgressBar>(QStringLiteral("ProgressBar1")).value();
  });
  EXPECT_EQ(rows[0], u"An COM         Chipkartenleser gefunden. Baudrate: 9600     Baud.");
  EXPECT_EQ(rows[1], u"An COM         Chipkartenleser gefunden. Baudrate: 9600     Baud.");
  EXPECT_EQ(rows[2], u"An COM         Chipkartenleser gefunden. Baudrate: 9600     Baud.");
  EXPECT_EQ(rows[3], u"");
  EXPECT_EQ(rows[4], u"1 weitere(n) Chipkartenleser gefunden.\nSiehe Schnittstellen weitere ...");
  EXPECT_EQ(statusText, u"Das KartoCheck Ergebnis wird angezeigt");
  EXPECT_EQ(progress, 100);

  EXPECT_TRUE(IsVisible(3));
  EXPECT_TRUE(program.Find<QRadioButton>(QStringLiteral("Opti_Comx_0")).isChecked());
  EXPECT_EQ(StatusText(), u"Die Krankenversichertendaten werden angezeigt");
  EXPECT_EQ(Title(), u"eGK VSDaten(Karte) abgebildet auf die Krankenversicherten Kartendaten");
  EXPECT_EQ(Value(7), u"Erika");
  EXPECT_EQ(program.Find<QProgressBar>(QStringLiteral("ProgressBar1")).value(), 0);
}

TEST_F(ScanTest, EveryPortIsOfferedAsItWasFound) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan();
  const std::array<bool, 5> offered{true, true, true, false, true};
  for (int member = 0; member < 5; ++member) {
    EXPECT_EQ(program.Find(QStringLiteral("Opti_Comx_%1").arg(member)).isEnabled(),
              offered.at(static_cast<std::size_t>(member)))
        << member;
  }
  EXPECT_EQ(program.Find<QTabWidget>(QStringLiteral("TabStrip1")).tabText(4),
            u"USB Device 1 (CTAPI pn=8192)");
  const auto& list = program.Find<QListWidget>(QStringLiteral("List1"));
  ASSERT_EQ(list.count(), 1);
  EXPECT_EQ(list.item(0)->text(), u"USB Device 1 (CTAPI pn=8192)");
}

struct DataRow {
  int member;  // of the port choice
  const char16_t* title;
  std::array<const char16_t*, 4> labels;  // rows 3, 4, 5 and 15
  const char16_t* firstName;
  bool isMobile;  // its supplement is copied, too
};

TEST_F(ScanTest, EveryKindOfDataHasItsTitleLabelsAndLines) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan();
  const std::array<const char16_t*, 4> egk{u"WOP:", u"Versichertenstatus_RSA:", u"Rechtskreis:",
                                           u"Gültigkeit (Ende):"};
  const std::array<const char16_t*, 4> kvk{u"VKNR:", u"Versichertenstatus:", u"Statusergänzung:",
                                           u"Gültigkeitsdatum:"};
  const DataRow rows[] = {
      {0, u"eGK VSDaten(Karte) abgebildet auf die Krankenversicherten Kartendaten", egk, u"Erika",
       false},
      {1, u"Krankenversicherten Kartendaten(Karte)", kvk, u"Jörg-Peter", false},
      {2, u"eGK VSDaten(Mobil) abgebildet auf die Krankenversicherten Kartendaten", egk, u"Max",
       true},
  };
  for (const DataRow& row : rows) {
    program.Click(QStringLiteral("Opti_Comx_%1").arg(row.member));
    EXPECT_EQ(Title(), row.title);
    const std::array<int, 4> labelRows{3, 4, 5, 15};
    for (std::size_t label = 0; label < labelRows.size(); ++label) {
      EXPECT_EQ(program.Text(QStringLiteral("Labl_Name_%1").arg(labelRows[label])),
                row.labels[label]);
    }
    EXPECT_EQ(Value(7), row.firstName);
    program.Click(QStringLiteral("CmdB_MKt_Test_4"));
    const QString copied = QApplication::clipboard()->text();
    for (const QString& format : ClipboardSecretFormats()) {
      EXPECT_TRUE(QApplication::clipboard()->mimeData()->hasFormat(format));
    }
    TerminalInfo info;
    info.Reset95 = row.isMobile;
    EXPECT_EQ(copied.count(QStringLiteral("\r\n")), ClipboardText(info, {}).size() / 2);
    EXPECT_TRUE(copied.endsWith(u"\r\n"));
    EXPECT_EQ(copied.split(QStringLiteral("\r\n")).value(7), row.firstName);
  }
}

TEST_F(ScanTest, AResetEmptiesTheFieldsOfThePort) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan();
  program.Click(QStringLiteral("CmdB_MKt_Test_5"));
  for (int row = 0; row < DataRowCount; ++row) EXPECT_EQ(Value(row), u"") << row;
  EXPECT_EQ(StatusText(), u"Die Anzeigefelder wurden zurückgesetzt");
  program.Click(QStringLiteral("Opti_Comx_1"));
  EXPECT_EQ(Value(7), u"Jörg-Peter");
}

TEST_F(ScanTest, EveryControlThatCouldStartAnotherActionIsDisabled) {
  const BoxAnswerer user(AnswersAtThePractice());
  int looks = 0;
  program.library.beforeExchange = [&](int /*exchange*/) {
    ++looks;
    for (const auto* name : {u"CmdB_MKt_Test_0", u"CmdB_MKt_Test_5", u"Opti_Comx_0", u"Opti_Comx_4",
                             u"Labe_Comx_1", u"List1", u"cmdeGK", u"mnuSchema", u"Pict_MKT_Test"}) {
      EXPECT_FALSE(program.Find(QStringView(name).toString()).isEnabled())
          << QStringView(name).toString().toStdString();
    }
    EXPECT_FALSE(program.window.findChild<QAction*>(QStringLiteral("mnuValidierung"))->isEnabled());
    EXPECT_TRUE(program.Find(QStringLiteral("TabStrip1")).isEnabledTo(&program.window));
    EXPECT_EQ(program.window.cursor().shape(), Qt::BusyCursor);
  };
  Scan();
  EXPECT_GE(looks, 30);
  for (const auto* name : {u"CmdB_MKt_Test_0", u"Opti_Comx_0", u"List1", u"cmdeGK", u"mnuSchema"}) {
    EXPECT_TRUE(program.Find(QStringView(name).toString()).isEnabled());
  }
  EXPECT_TRUE(program.window.findChild<QAction*>(QStringLiteral("mnuValidierung"))->isEnabled());
  EXPECT_EQ(program.window.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ScanTest, ACloseRequestInItsMiddleClosesAtItsEndWithoutAQuestion) {
  const BoxAnswerer user({});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 5) {
      EXPECT_FALSE(program.window.close());
    }
    EXPECT_TRUE(program.window.isVisible());
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  EXPECT_FALSE(program.window.isVisible());
  EXPECT_FALSE(program.module.IsLinkOpen());
}

TEST_F(ScanTest, TheSystemClosesTheResultWindowToo) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan([&](QWidget& /*window*/) { program.window.CloseForSystem(); });
  EXPECT_FALSE(program.window.isVisible());
}

TEST_F(ScanTest, AClickOnATabWritesItsStatusText) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan();
  program.Click(QStringLiteral("CmdB_MKt_Test_2"));
  auto* bar = program.Find<QTabWidget>(QStringLiteral("TabStrip1")).findChild<QTabBar*>();
  for (const int tab : {1, 1, 4}) {
    program.window.ShowStatusText(QStringLiteral("anderes"));
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
    EXPECT_EQ(StatusText(), u"Der MKT Status wird angezeigt");
    EXPECT_EQ(bar->currentIndex(), tab);
  }
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Status_4_7")), u"USB\\VID_FFFE&PID_0001\\SIM0001");
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Status_0_2")), u"Serie Gamma");
}

TEST_F(ScanTest, AnEntryOfTheListChoosesTheFurtherPort) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan();
  auto& list = program.Find<QListWidget>(QStringLiteral("List1"));
  const auto clickEntry = [&] {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(list.item(0)).center());
  };
  for (int round = 0; round < 2; ++round) {
    program.Click(QStringLiteral("Opti_Comx_0"));
    EXPECT_EQ(program.module.SelectedPort, Port(1));
    clickEntry();
    EXPECT_EQ(program.module.SelectedPort, Port(8192));
    EXPECT_EQ(program.module.CurrentSlot, 5);
    EXPECT_TRUE(program.Find<QRadioButton>(QStringLiteral("Opti_Comx_4")).isChecked());
    EXPECT_EQ(StatusText(), u"Das USB device 1 wurde ausgewählt");
  }
}

TEST_F(ScanTest, TheFocusAloneChoosesNoFurtherPort) {
  const BoxAnswerer user(AnswersAtThePractice());
  Scan();
  program.view.furtherPorts.Set({.ports = {{QStringLiteral("USB Device 1 (CTAPI pn=8192)"), {}}}});
  program.Find(QStringLiteral("List1")).setFocus(Qt::TabFocusReason);
  EXPECT_EQ(program.module.SelectedPort, Port(1));
  program.Press(QStringLiteral("List1"), Qt::Key_Space);
  EXPECT_EQ(program.module.SelectedPort, Port(8192));
}

TEST(EmptyScanTest, NothingFoundIsToldAndTheStatusStays) {
  SimulatedProgram program(QStringLiteral("leer"));
  const BoxAnswerer user({});
  QString text;
  {
    const WindowVisitor visitor(ResultWindow, [&](QWidget& window) {
      text = Screen(window).Text(QStringLiteral("Labe_DatenInfo1_1"));
    });
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  EXPECT_EQ(text, u"Keinen Chipkartenleser gefunden!");
  EXPECT_TRUE(program.Find(QStringLiteral("Fram_Show_2")).isVisible());
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")), u"Der MKT Status wird angezeigt");
  EXPECT_TRUE(program.Find(QStringLiteral("Opti_Comx_4")).isEnabled()) << "searches again";
}

// The result window closes with the keyboard, and the focus goes to the status button, which was
// marked.
TEST(EmptyScanTest, EscapeClosesTheResult) {
  SimulatedProgram program(QStringLiteral("leer"));
  const BoxAnswerer user({});
  const WindowVisitor visitor(ResultWindow, [](QWidget& window) {
    Screen(window).Press(QStringLiteral("Command1"), Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
  });
  program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  EXPECT_EQ(program.window.focusWidget(), &program.Find(QStringLiteral("CmdB_MKt_Test_2")));
}

// Behind COM 100 there is a USB device, which is not found then.
TEST(SweepTest, EscapeInTheWaitFrameEndsIt) {
  SimulatedProgram program(QStringLiteral("praxis"));
  const BoxAnswerer user({PressButton(QMessageBox::Yes)});
  int last = 0;
  program.library.beforeInit = [&](int pn) {
    last = pn;
    if (pn != 100) return;
    EXPECT_TRUE(program.Find(QStringLiteral("Fram_Show_0")).isVisible());
    Activate(program.window);
    QTest::keyClick(&program.window, Qt::Key_Escape);
  };
  {
    const WindowVisitor visitor(ResultWindow, [&](QWidget& window) {
      EXPECT_EQ(Screen(window).Text(QStringLiteral("Labe_DatenInfo1_4")), u"");
    });
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  EXPECT_EQ(last, 100);
  EXPECT_EQ(program.Find<QListWidget>(QStringLiteral("List1")).count(), 0);
}

}  // namespace
}  // namespace kartocheck::test
