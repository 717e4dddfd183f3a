#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "gui/support/window_visitor.h"
#include "support/printing.h"
#include "ui/main_window/data_frame.h"

// A tour with the keyboard alone: scan, choose, read, copy, eGK window, diagnosis, report, exit. No
// control is named to press it; the keys go to whatever has the focus.

namespace kartocheck::test {
namespace {

void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  QWidget* front = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (front = FrontWindow()) != nullptr; }));
  QTest::keyClick(front->focusWidget() == nullptr ? front : front->focusWidget(), key, modifiers);
}

// Walks with the Tab key until the control of this name has the focus.
void TabTo(const QString& name) {
  for (int step = 0; step < 60; ++step) {
    if (QApplication::focusWidget() != nullptr &&
        QApplication::focusWidget()->objectName() == name) {
      return;
    }
    Press(Qt::Key_Tab);
  }
  FAIL() << "no Tab key leads to " << name.toStdString();
}

// Qt shows a button pressed for a moment before it is clicked.
void PressYes(QMessageBox& box) {
  QTest::keyClick(&box, Qt::Key_J);
  EXPECT_TRUE(WaitUntil([&] { return !box.isVisible(); }));
}

// Opens the menu and walks with the arrow keys to the entry that copies the report.
void ChooseReport(SimulatedProgram& program) {
  const auto* entry = program.window.findChild<QAction*>(QStringLiteral("mnuPruefbericht"));
  Press(Qt::Key_H, Qt::AltModifier);
  ASSERT_TRUE(WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
  const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  for (qsizetype step = 0; step < menu->actions().size() && menu->activeAction() != entry; ++step) {
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
  }
  ASSERT_EQ(menu->activeAction(), entry);
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
}

TEST(KeyboardTourTest, ScanChooseReadCopyEgkWindowDiagnosisReportQuit) {
  SimulatedProgram program(QStringLiteral("praxis"));
  const auto isIdle = [&] { return !program.module.Busy; };

  {
    const BoxAnswerer user({PressYes, PressKey(Qt::Key_Return)});
    const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [](QWidget& window) {
      Press(Qt::Key_Return);
      EXPECT_FALSE(window.isVisible());
    });
    Press(Qt::Key_P, Qt::AltModifier);
    ASSERT_TRUE(WaitUntil([&] { return program.module.Terminals[1].DataRead && isIdle(); }));
  }
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_7")), u"Erika");

  TabTo(QStringLiteral("Opti_Comx_0"));
  Press(Qt::Key_Down);
  EXPECT_EQ(program.module.SelectedPort, Port(2));
  Press(Qt::Key_Z, Qt::AltModifier);
  ASSERT_TRUE(WaitUntil([&] { return !program.module.Terminals[2].DataRead && isIdle(); }));
  Press(Qt::Key_L, Qt::AltModifier);
  ASSERT_TRUE(WaitUntil([&] { return program.module.Terminals[2].DataRead && isIdle(); }));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_7")), u"Jörg-Peter");

  QApplication::clipboard()->clear();
  Press(Qt::Key_K, Qt::AltModifier);
  ASSERT_TRUE(WaitUntil([] { return !QApplication::clipboard()->text().isEmpty(); }));
  EXPECT_EQ(QApplication::clipboard()->text().count(u'\n'), ClipboardText({}, {}).count(u'\n'));

  TabTo(QStringLiteral("Opti_Comx_1"));
  Press(Qt::Key_Up);
  TabTo(QStringLiteral("cmdeGK"));
  Press(Qt::Key_Space);
  {
    QWidget& window = SideWindow(QStringLiteral("Form_egK_Info"));
    // Tab leads to a group of buttons, the arrow keys through it.
    TabTo(QStringLiteral("CmdB_VsdKind_0"));
    Press(Qt::Key_Right);
    EXPECT_EQ(Screen(window).Text(QStringLiteral("Label1")), u"Allgemeine Versicherungsdaten:\n");
    TabTo(QStringLiteral("Command1"));
    Press(Qt::Key_Right);
    EXPECT_TRUE(Screen(window).Find(QStringLiteral("Text1")).isVisible());
    Press(Qt::Key_Right);
    EXPECT_TRUE(Screen(window).Find(QStringLiteral("Frame2")).isVisible());
    Press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
  }

  {
    const BoxAnswerer user({PressYes, PressYes, PressYes, PressYes, PressKey(Qt::Key_Return)});
    Press(Qt::Key_G, Qt::AltModifier);
    ASSERT_TRUE(WaitUntil([&] { return user.seen.size() == 5 && isIdle(); }));
  }
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")), u"Der MKT Status wird angezeigt");

  ChooseReport(program);
  EXPECT_EQ(QApplication::clipboard()->text(), program.Report());

  BoxAnswerer user({PressKey(Qt::Key_Return)});
  Press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_TRUE(WaitUntil([&] { return !program.window.isVisible(); }));
}

TEST(KeyboardTourTest, TheMenusOpenWithTheirMnemonics) {
  SimulatedProgram program(QStringLiteral("leer"));
  Press(Qt::Key_H, Qt::AltModifier);
  ASSERT_TRUE(WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_O);
  SideWindow(QStringLiteral("Form_Info")).close();
  Press(Qt::Key_D, Qt::AltModifier);
  ASSERT_TRUE(WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_V);
  EXPECT_TRUE(program.module.Validation.isOn);
}

}  // namespace
}  // namespace kartocheck::test
