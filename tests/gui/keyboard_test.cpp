#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>
#include <map>

#include "gui/support/program.h"
#include "support/printing.h"
#include "ui/main_window/data_frame.h"

namespace kartocheck::test {
namespace {

QString Member(const char16_t* array, int index) {
  return QStringView(array).toString() + u'_' + QString::number(index);
}

class KeyboardTest : public testing::Test {
 protected:
  // The object names that the Tab key walks through, once around from the given control.
  QStringList TabChain(const QString& from) {
    program.Find(from).setFocus();
    QStringList names;
    do {
      names << QApplication::focusWidget()->objectName();
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget()->objectName() != from && names.size() < 100);
    return names;
  }

  bool StatusFrameIsVisible() { return program.Find(QStringLiteral("Fram_Show_2")).isVisible(); }

  Program program;
};

TEST_F(KeyboardTest, ArrowKeysChooseThePort) {
  program.Find(QStringLiteral("Opti_Comx_0")).setFocus();
  program.Press(QStringLiteral("Opti_Comx_0"), Qt::Key_Down);
  EXPECT_TRUE(program.Find<QRadioButton>(QStringLiteral("Opti_Comx_1")).isChecked());
  EXPECT_EQ(program.module.CurrentSlot, 2);
}

TEST_F(KeyboardTest, TabKeyWalksFromButtonsToPortsToData) {
  QStringList expected;
  for (int index = 0; index < 6; ++index) expected << Member(u"CmdB_MKt_Test", index);
  expected << QStringLiteral("Opti_Comx_0") << QStringLiteral("Labl_Schnittstelle")
           << QStringLiteral("cmdeGK");
  for (int row = 0; row < DataRowCount; ++row) expected << Member(u"Labl_Wert", row);
  EXPECT_EQ(TabChain(QStringLiteral("CmdB_MKt_Test_0")).join(u' '), expected.join(u' '));
}

TEST_F(KeyboardTest, TheTabKeyReachesTheListOnceItHoldsSomething) {
  EXPECT_FALSE(TabChain(QStringLiteral("CmdB_MKt_Test_0")).contains(QStringLiteral("List1")));
  program.view.furtherPorts.Set({.ports = {{QStringLiteral("COM 7 (CTAPI pn=7)"), {}}}});
  EXPECT_TRUE(TabChain(QStringLiteral("CmdB_MKt_Test_0")).contains(QStringLiteral("List1")));
}

TEST_F(KeyboardTest, TabKeyWalksThroughTheStatusTab) {
  (void)program.window.ShowFrameX(2);
  QStringList expected;
  for (int index = 0; index < 6; ++index) expected << Member(u"CmdB_MKt_Test", index);
  expected << QStringLiteral("Opti_Comx_0") << QStringLiteral("Labl_Schnittstelle")
           << QStringLiteral("cmdeGK") << QStringLiteral("qt_tabwidget_tabbar");
  for (int row = 0; row < 8; ++row) expected << Member(u"Labl_Status_0", row);
  EXPECT_EQ(TabChain(QStringLiteral("CmdB_MKt_Test_0")).join(u' '), expected.join(u' '));
}

TEST_F(KeyboardTest, NoMnemonicIsGivenTwice) {
  std::map<QKeySequence, QString> taken;
  const auto take = [&](const QString& text) {
    const QKeySequence key = QKeySequence::mnemonic(text);
    ASSERT_FALSE(key.isEmpty()) << text.toStdString();
    EXPECT_TRUE(taken.emplace(key, text).second) << text.toStdString();
  };
  for (int index = 0; index < 6; ++index) {
    take(program.Find<QToolButton>(Member(u"CmdB_MKt_Test", index)).text());
  }
  for (const QAction* menu : program.window.menuBar()->actions()) take(menu->text());
}

TEST_F(KeyboardTest, MnemonicPressesTheButton) {
  QTest::keyClick(&program.window, Qt::Key_S, Qt::AltModifier);
  // Qt shows the button pressed for a moment first.
  EXPECT_TRUE(WaitUntil([&] { return StatusFrameIsVisible(); }));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_StatusText")), u"Der MKT Status wird angezeigt");
}

TEST_F(KeyboardTest, SpaceAndEnterPressTheFocusedButton) {
  for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    (void)program.window.ShowFrameX(3);
    program.Find(QStringLiteral("CmdB_MKt_Test_2")).setFocus();
    program.Press(QStringLiteral("CmdB_MKt_Test_2"), key);
    EXPECT_TRUE(StatusFrameIsVisible()) << key;
  }
}

}  // namespace
}  // namespace kartocheck::test
