#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "gui/support/window_visitor.h"
#include "support/fake_port_directory.h"
#include "support/simulated_ports.h"

// What the window says of the chosen port, and how a search is ended in it.

namespace kartocheck::test {
namespace {

const QString Facts = QStringLiteral("Labl_Schnittstelle");
const QString FurtherPorts = QStringLiteral("Opti_Comx_4");
const QString ScanButton = QStringLiteral("CmdB_MKt_Test_0");
const QString SearchHint = QStringLiteral(
    "Ein Klick auf \"weitere ...\" (oder die Leertaste) sucht nach weiteren Schnittstellen.");

class PortChoiceWindowTest : public testing::Test {
 protected:
  [[nodiscard]] QString ShownFacts() {
    QApplication::processEvents();
    const QLabel& facts = program.Find<QLabel>(Facts);
    return facts.isVisible() ? facts.text() : QString();
  }

  FakePortDirectory machine;
  SimulatedProgram program{QStringLiteral("leer"), {}, &machine};
};

TEST_F(PortChoiceWindowTest, AnEmptyListSaysHowItIsFilled) {
  EXPECT_EQ(ShownFacts(), SearchHint);
  program.practice.Attach(8192, PortOf("omega"));
  program.Click(FurtherPorts);
  EXPECT_EQ(ShownFacts(), QString());
}

TEST_F(PortChoiceWindowTest, WhyTheChosenPortCannotBeUsedStandsBelowTheList) {
  ctapi::SimulatedPort absent;
  absent.Line = ctapi::SerialLine{.Port = ctapi::SerialLine::State::Absent};
  program.practice.Attach(1, absent);
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [](QWidget&) {});
  program.Click(ScanButton);
  EXPECT_EQ(ShownFacts(),
            u"COM 1: Ist nicht vorhanden bzw. wird vom System benutzt!\n" + SearchHint);
  const QLabel& inTab = program.Find<QLabel>(QStringLiteral("Labl_StatusHinweis_0"));
  EXPECT_TRUE(inTab.isVisible());
  EXPECT_EQ(inTab.text(), u"COM 1: Ist nicht vorhanden bzw. wird vom System benutzt!");
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusHinweis_4")), SearchHint);
}

TEST_F(PortChoiceWindowTest, TheFocusedPortsHintComesFirst) {
  program.view.portHints[3].Set(QStringLiteral("darum nicht"));
  EXPECT_EQ(ShownFacts(), SearchHint);
  program.Find(QStringLiteral("Opti_Comx_2")).setFocus();
  EXPECT_EQ(ShownFacts(), u"darum nicht\n" + SearchHint);
  program.Find(QStringLiteral("Opti_Comx_0")).setFocus();
  EXPECT_EQ(ShownFacts(), SearchHint);
}

TEST_F(PortChoiceWindowTest, DevicesAreToldApart) {
  machine.identifications[8192] = QStringLiteral("Muster Leser 00 00");
  machine.identifications[8193] = QStringLiteral("Muster Leser 01 00");
  for (const int pn : {8192, 8193}) {
    program.practice.Attach(static_cast<std::uint16_t>(pn), PortOf("omega"));
  }
  program.Click(FurtherPorts);
  EXPECT_EQ(ShownFacts(), u"Muster Leser 00 00");
  auto& list = program.Find<QListWidget>(QStringLiteral("List1"));
  EXPECT_EQ(list.item(1)->text(), u"USB Device 2 (CTAPI pn=8193)");
  EXPECT_EQ(list.item(1)->toolTip(), u"Muster Leser 01 00");
  EXPECT_EQ(list.item(1)->data(Qt::AccessibleDescriptionRole).toString(), u"Muster Leser 01 00");
  list.setCurrentRow(1);
  EXPECT_EQ(ShownFacts(), u"Muster Leser 01 00");
}

TEST_F(PortChoiceWindowTest, AnArrowKeyStartsNoSearchAndTheSpaceKeyDoes) {
  program.practice.Attach(8192, PortOf("omega"));
  program.Click(QStringLiteral("Opti_Comx_3"));
  program.Find(QStringLiteral("Opti_Comx_3")).setFocus();
  program.Press(QStringLiteral("Opti_Comx_3"), Qt::Key_Down);
  EXPECT_TRUE(program.Find<QRadioButton>(FurtherPorts).isChecked());
  EXPECT_EQ(program.Find<QListWidget>(QStringLiteral("List1")).count(), 0);
  program.Press(FurtherPorts, Qt::Key_Space);
  EXPECT_EQ(program.Find<QListWidget>(QStringLiteral("List1")).count(), 1);
}

TEST_F(PortChoiceWindowTest, ASearchIsEndedByItsButton) {
  int shown = 0;
  program.view.isSearching.Watch([&](bool isSearching) {
    if (!isSearching) return;
    QMetaObject::invokeMethod(
        &program.window,
        [&] {
          auto& button = program.Find<QPushButton>(QStringLiteral("Butt_SucheBeenden"));
          EXPECT_TRUE(button.isVisible());
          EXPECT_TRUE(program.Find(QStringLiteral("Labe_WartenHinweis")).isVisible());
          button.click();
          EXPECT_FALSE(button.isVisible());
          ++shown;
        },
        Qt::QueuedConnection);
  });
  program.practice.Attach(8192, PortOf("omega"));
  QString text;
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [&](QWidget& window) {
    text = Screen(window).Text(QStringLiteral("Labe_DatenInfo1_1"));
  });
  program.Click(ScanButton);
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(text, u"Die Suche wurde beendet, bevor etwas gefunden war.");
  EXPECT_TRUE(program.module.FurtherPorts.empty());
}

TEST_F(PortChoiceWindowTest, WhereNothingIsSearchedNothingIsOffered) {
  program.view.frame.Set(Frame::Wait);
  EXPECT_FALSE(program.Find(QStringLiteral("Butt_SucheBeenden")).isVisible());
  EXPECT_FALSE(program.Find(QStringLiteral("Labe_WartenHinweis")).isVisible());
}

TEST_F(PortChoiceWindowTest, TheResultWindowSaysWhatIsKnown) {
  ScanResult result;
  result.rows[1] = {.text = QStringLiteral("An COM         Chipkartenleser"),
                    .number = QStringLiteral("2"),
                    .showsKey = true,
                    .hint = QStringLiteral("darum nicht")};
  QString text;
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [&](QWidget& window) {
    text = Screen(window).Text(QStringLiteral("Labe_Hinweis"));
  });
  program.window.ShowScanResult(result);
  EXPECT_EQ(text, u"COM 2: darum nicht");
}

TEST_F(PortChoiceWindowTest, ANoticeIsShownAsLongAsItIsOne) {
  const QWidget& notice = program.Find(QStringLiteral("Labl_Meldung"));
  EXPECT_FALSE(notice.isVisible());
  program.Click(QStringLiteral("CmdB_MKt_Test_4"));
  EXPECT_TRUE(notice.isVisible());
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Meldung")),
            u"Es sind keine Daten gelesen. Kopiert wurden nur leere Zeilen.");
  program.Click(QStringLiteral("CmdB_MKt_Test_2"));
  EXPECT_FALSE(notice.isVisible());
}

TEST_F(PortChoiceWindowTest, TheEgkWindowSaysThatNothingWasRead) {
  program.Click(QStringLiteral("cmdeGK"));
  auto* window = program.window.findChild<QDialog*>(QStringLiteral("Form_egK_Info"));
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(Screen(*window).Text(QStringLiteral("Labl_Meldung")),
            u"Es wurden keine eGK-Daten gelesen.");
}

}  // namespace
}  // namespace kartocheck::test
