#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>

#include <gtest/gtest.h>

#include "diagnosis/port_hints.h"
#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "gui/support/window_visitor.h"
#include "support/fake_port_directory.h"
#include "support/printing.h"
#include "support/simulated_ports.h"

// What the window says where a port or a reader cannot be used.

namespace kartocheck::test {
namespace {

const QString HintField = QStringLiteral("Labl_Hinweis");
const QString FurtherPorts = QStringLiteral("Opti_Comx_4");

const QString NotPermittedText = QStringLiteral(
    "Sie dürfen /dev/ttyS0, /dev/ttyUSB0 nicht öffnen. Lassen Sie sich in die Gruppe \"dialout\" "
    "aufnehmen und melden Sie sich neu an.");
// In the words of the system's users.
const QString NoServiceText = PortHint(NoService);
const QString HeldText = QStringLiteral(
    "Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie es und versuchen Sie es "
    "noch einmal.");

class HintWindowTest : public testing::Test {
 protected:
  FakePortDirectory machine;
  SimulatedProgram program{QStringLiteral("leer"), {}, &machine};
  QLabel& hint = program.Find<QLabel>(HintField);
};

TEST_F(HintWindowTest, AtTheStartNothingIsKnown) {
  machine.troublesWithoutReader = {NoService};
  EXPECT_FALSE(hint.isVisible());
}

TEST_F(HintWindowTest, WithoutAReaderTheReasonStandsBelowTheList) {
  const std::pair<std::vector<PortTrouble>, QString> rows[] = {
      {{NoService}, NoServiceText},
      {{NotPermitted}, NotPermittedText},
      {{NotPermitted, NoService}, NotPermittedText + u'\n' + NoServiceText}};
  for (const auto& [troubles, text] : rows) {
    machine.troublesWithoutReader = troubles;
    program.Click(FurtherPorts);
    EXPECT_TRUE(hint.isVisible());
    EXPECT_EQ(hint.text(), text);
    const QWidget& list = program.Find(QStringLiteral("List1"));
    EXPECT_EQ(hint.parentWidget(), list.parentWidget());
    QApplication::processEvents();
    EXPECT_GE(hint.y(), list.geometry().bottom());
  }
}

TEST_F(HintWindowTest, AFullScanShowsItToo) {
  machine.troublesWithoutReader = {NoService};
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [](QWidget&) {});
  program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  EXPECT_TRUE(hint.isVisible());
}

TEST_F(HintWindowTest, WithAReaderItIsGone) {
  machine.troublesWithoutReader = {NoService};
  program.Click(FurtherPorts);
  ASSERT_TRUE(hint.isVisible());
  program.practice.Attach(8192, PortOf("omega"));
  program.Click(FurtherPorts);
  ASSERT_EQ(program.Find<QListWidget>(QStringLiteral("List1")).count(), 1);
  EXPECT_FALSE(hint.isVisible());
}

TEST_F(HintWindowTest, WhereNothingIsInTheWayItStaysHidden) {
  program.Click(FurtherPorts);
  EXPECT_FALSE(hint.isVisible());
}

TEST_F(HintWindowTest, ItIsReadSelectedAndReachedLikeAnyValue) {
  machine.troublesWithoutReader = {NoService};
  program.Click(FurtherPorts);
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&hint);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->text(QAccessible::Name), u"Hinweis:");
  EXPECT_EQ(accessible->text(QAccessible::Value), NoServiceText);
  EXPECT_TRUE(hint.textInteractionFlags().testFlags(Qt::TextSelectableByMouse |
                                                    Qt::TextSelectableByKeyboard));
  EXPECT_EQ(hint.textFormat(), Qt::PlainText);
  EXPECT_EQ(hint.focusPolicy(), Qt::StrongFocus);
  program.Find(QStringLiteral("List1")).setFocus();
  program.Press(QStringLiteral("List1"), Qt::Key_Tab);
  program.Press(QStringLiteral("Labl_Schnittstelle"), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), &hint);
}

// Room for all lines, without a wider column or window.
TEST_F(HintWindowTest, ItIsWrappedAndNeverCut) {
  const int column = program.Find(QStringLiteral("Fram_Comx")).width();
  machine.troublesWithoutReader = {NotPermitted, NoService};
  const auto expectRoom = [&] {
    QApplication::processEvents();
    EXPECT_TRUE(hint.wordWrap());
    EXPECT_GE(hint.height(), hint.heightForWidth(hint.width()));
    EXPECT_GE(hint.heightForWidth(hint.width()), 6 * hint.fontMetrics().lineSpacing());
    EXPECT_TRUE(hint.parentWidget()->rect().contains(hint.geometry()));
  };
  program.Click(FurtherPorts);
  expectRoom();
  EXPECT_EQ(program.Find(QStringLiteral("Fram_Comx")).width(), column);
  program.window.resize(program.window.minimumSizeHint());
  expectRoom();
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * 1.8);
  program.window.setFont(font);
  program.window.resize(program.window.sizeHint());
  QApplication::processEvents();
  expectRoom();
}

TEST_F(HintWindowTest, ALongStatusTextLeavesTheProgressItsPlace) {
  const QWidget& progress = program.Find(QStringLiteral("ProgressBar1"));
  const QWidget& bar = program.Find(QStringLiteral("StatusBar1"));
  program.window.ShowStatusText(NotPermittedText + NoServiceText);
  QApplication::processEvents();
  EXPECT_EQ(bar.width(), program.window.width());
  EXPECT_TRUE(bar.rect().contains(progress.geometry()));
  EXPECT_EQ(program.Find(QStringLiteral("Labl_StatusText")).toolTip(),
            NotPermittedText + NoServiceText);
  program.window.ShowStatusText(HeldText);
  auto& text = program.Find<QLabel>(QStringLiteral("Labl_StatusText"));
  ASSERT_TRUE(WaitUntil([&] { return text.height() >= text.heightForWidth(text.width()); }))
      << "it is seen as a whole";
}

TEST_F(HintWindowTest, ThePortThatCannotBeUsedSaysWhy) {
  program.view.portHints[2].Set(NotPermittedText);
  const auto& option = program.Find<QRadioButton>(QStringLiteral("Opti_Comx_1"));
  EXPECT_EQ(option.toolTip(), NotPermittedText);
  EXPECT_EQ(option.accessibleDescription(), NotPermittedText);
  EXPECT_EQ(program.Find(QStringLiteral("Labe_Comx_1")).toolTip(), NotPermittedText);
  EXPECT_EQ(program.Find(QStringLiteral("Opti_Comx_0")).toolTip(), QString());
  EXPECT_TRUE(program.Find(QStringLiteral("List1")).toolTip().startsWith(u"Ein Klick auf"))
      << "the list is about the further ports";
  program.view.portHints[2].Set({});
  EXPECT_EQ(option.toolTip(), QString());
  EXPECT_EQ(option.accessibleDescription(), QString());
  EXPECT_EQ(program.Find(QStringLiteral("Labe_Comx_1")).toolTip(), QString());
}

TEST_F(HintWindowTest, TheChosenFurtherPortSaysWhyInTheList) {
  machine.troubles[8193] = CardHeld;
  program.practice.Attach(8192, PortOf("keine-karte"));
  program.practice.Attach(8193, PortOf("keine-karte"));
  program.Click(FurtherPorts);
  auto& list = program.Find<QListWidget>(QStringLiteral("List1"));
  EXPECT_EQ(list.toolTip(), QString());
  list.setCurrentRow(1);
  EXPECT_EQ(list.toolTip(), HeldText);
  EXPECT_EQ(list.accessibleDescription(), HeldText);
  EXPECT_EQ(program.Find(FurtherPorts).toolTip(), HeldText);
  list.setCurrentRow(0);
  EXPECT_EQ(list.toolTip(), QString());
}

TEST_F(HintWindowTest, ACardThatIsHeldIsToldInTheStatusBarWhileThePromptIsOpen) {
  machine.troubles[8192] = CardHeld;
  program.practice.Attach(8192, PortOf("keine-karte"));
  program.Click(FurtherPorts);
  QString duringPrompt;
  {
    BoxAnswerer user({[&](QMessageBox& box) {
      duringPrompt = program.Text(QStringLiteral("Labl_StatusText"));
      EXPECT_TRUE(box.text().contains(u"Bitte eine Krankenversichertenkarte"));
      PressButton(QMessageBox::Cancel)(box);
    }});
    program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  }
  EXPECT_EQ(duringPrompt, HeldText);
}

TEST(SimulationHintTest, ASimulatedPracticeWithoutReaderShowsNone) {
  SimulatedProgram program(QStringLiteral("leer"), {.simulation = true});
  program.Click(FurtherPorts);
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")), u"Keinen Chipkartenleser gefunden!");
  EXPECT_FALSE(program.Find(HintField).isVisible());
}

}  // namespace
}  // namespace kartocheck::test
