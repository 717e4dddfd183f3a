#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/simulated_program.h"
#include "support/printing.h"

// The windows beside the main one, opened from it and closed in every way.

namespace kartocheck::test {
namespace {

struct SideWindowRow {
  const char16_t* name;
  const char16_t* entry;  // menu entry, or button
};

void PrintTo(const SideWindowRow& row, std::ostream* out) {
  *out << QStringView(row.name).toString().toStdString();
}

constexpr SideWindowRow OwnWindows[] = {
    {u"Form_FirstUser", u"mnuBenutzerInformation"},
    {u"Form_Info", u"mnuInfo"},
    {u"Form_egK_Info", u"cmdeGK"},
};

constexpr SideWindowRow QtsWindows[] = {{u"dlgKartoCheck", u"mnuSchema_2"}};

std::string NameOf(const testing::TestParamInfo<SideWindowRow>& row) {
  return QStringView(row.param.name).toString().toStdString();
}

class SideWindowTest : public testing::TestWithParam<SideWindowRow> {
 protected:
  QWidget& Open() {
    const QString entry = QStringView(GetParam().entry).toString();
    if (auto* action = program.window.findChild<QAction*>(entry)) {
      action->trigger();
    } else {
      program.Click(entry);
    }
    return SideWindow(QStringView(GetParam().name).toString());
  }

  SimulatedProgram program{QStringLiteral("egk-beispiel")};
};

TEST_P(SideWindowTest, LiesModallyOverTheMainWindow) {
  QWidget& window = Open();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.isModal());
  EXPECT_EQ(window.parentWidget(), &program.window);
  EXPECT_FALSE(window.windowTitle().isEmpty());
}

TEST_P(SideWindowTest, EscapeClosesItAndLeavesTheProgram) {
  QPointer<QWidget> window = &Open();
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_TRUE(WaitUntil([&] { return window.isNull(); })) << "it is gone for good";
  EXPECT_TRUE(program.window.isVisible());
}

TEST_P(SideWindowTest, TheCloseBoxClosesItAndLeavesTheProgram) {
  QPointer<QWidget> window = &Open();
  window->close();
  EXPECT_TRUE(WaitUntil([&] { return window.isNull(); }));
  EXPECT_TRUE(program.window.isVisible());
}

TEST_P(SideWindowTest, TheSystemClosesItWithTheProgram) {
  const BoxAnswerer user({});
  QPointer<QWidget> window = &Open();
  program.window.CloseForSystem();
  EXPECT_FALSE(program.window.isVisible());
  EXPECT_TRUE(window.isNull() || !window->isVisible());
}

TEST_P(SideWindowTest, OpensAnew) {
  Open().close();
  QWidget& again = Open();
  EXPECT_TRUE(again.isVisible());
}

class OwnWindowTest : public SideWindowTest {};

// Every label that is not wrapped, and every button, has the room it asks for.
TEST_P(OwnWindowTest, NothingIsCutWithALargeFont) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSizeF(large.pointSizeF() * 1.8);
  QApplication::setFont(large);
  QWidget& window = Open();
  window.resize(window.sizeHint());
  QCoreApplication::processEvents();
  int checked = 0;
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (!label->isVisible() || label->wordWrap()) continue;
    EXPECT_GE(label->width(), label->minimumSizeHint().width()) << label->text().toStdString();
    EXPECT_GE(label->height(), label->minimumSizeHint().height()) << label->text().toStdString();
    ++checked;
  }
  for (const auto* button : window.findChildren<QPushButton*>()) {
    EXPECT_GE(button->width(), button->minimumSizeHint().width()) << button->text().toStdString();
    ++checked;
  }
  EXPECT_GE(checked, 2);
  window.close();
  QApplication::setFont(before);
}

TEST_P(OwnWindowTest, EveryControlHasAnAccessibleName) {
  QWidget& window = Open();
  int checked = 0;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if ((widget->focusPolicy() & Qt::TabFocus) == 0 || widget->objectName().isEmpty()) continue;
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(accessible, nullptr);
    EXPECT_FALSE(accessible->text(QAccessible::Name).trimmed().isEmpty())
        << widget->objectName().toStdString();
    ++checked;
  }
  EXPECT_GE(checked, 1);
}

INSTANTIATE_TEST_SUITE_P(OwnWindows, SideWindowTest, testing::ValuesIn(OwnWindows), NameOf);
INSTANTIATE_TEST_SUITE_P(QtsWindows, SideWindowTest, testing::ValuesIn(QtsWindows), NameOf);
INSTANTIATE_TEST_SUITE_P(OwnWindows, OwnWindowTest, testing::ValuesIn(OwnWindows), NameOf);

TEST(EgkSideWindowTest, RemembersNothing) {
  SimulatedProgram program(QStringLiteral("egk-beispiel"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("cmdeGK"));
  {
    QWidget& window = SideWindow(QStringLiteral("Form_egK_Info"));
    Screen(window).Click(QStringLiteral("CmdB_VsdKind_1"));
    Screen(window).Click(QStringLiteral("Command4"));
    window.close();
  }
  ASSERT_TRUE(WaitUntil([&] {
    return program.window.findChild<QWidget*>(QStringLiteral("Form_egK_Info")) == nullptr;
  }));
  program.Click(QStringLiteral("CmdB_MKt_Test_5"));
  program.Click(QStringLiteral("cmdeGK"));
  Screen again(SideWindow(QStringLiteral("Form_egK_Info")));
  EXPECT_TRUE(again.Find(QStringLiteral("MSFlexGrid1")).isVisible());
  EXPECT_EQ(again.Text(QStringLiteral("Label1")), u"Persönliche Versichertendaten:\n");
  EXPECT_EQ(again.Text(QStringLiteral("Label3")), u"ICC Serial Number:       0x");
}

TEST(EgkSideWindowTest, TheSystemClosesItsHelpToo) {
  SimulatedProgram program(QStringLiteral("egk-beispiel"));
  program.Click(QStringLiteral("cmdeGK"));
  BoxAnswerer user({[&](QMessageBox& /*box*/) { program.window.CloseForSystem(); }});
  Screen(SideWindow(QStringLiteral("Form_egK_Info"))).Click(QStringLiteral("Command6"));
  EXPECT_EQ(user.seen.size(), 1U);
  EXPECT_FALSE(program.window.isVisible());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// A mobile terminal's record and a card are told apart by the terminal's slot.
TEST(EgkSideWindowTest, ShowsTheSlotThatIsChosen) {
  SimulatedProgram program(QStringLiteral("praxis"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  program.Click(QStringLiteral("Opti_Comx_2"));
  {
    const BoxAnswerer user({PressButton(QMessageBox::Yes)});
    program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  }
  program.Click(QStringLiteral("cmdeGK"));
  {
    QWidget& window = SideWindow(QStringLiteral("Form_egK_Info"));
    Screen mobile(window);
    EXPECT_EQ(mobile.Text(QStringLiteral("Label10")), u"Einlesedatum:     05.03.2024");
    EXPECT_EQ(mobile.Text(QStringLiteral("Label11")), u"TLV: 0x91083035303332303234");
    EXPECT_EQ(mobile.Text(QStringLiteral("Label12")),
              u"Zulassungsnummer: DENRV;DEMOTERM;001.002.003:004.005.006");
    window.close();
  }
  ASSERT_TRUE(WaitUntil([&] {
    return program.window.findChild<QWidget*>(QStringLiteral("Form_egK_Info")) == nullptr;
  }));
  program.Click(QStringLiteral("Opti_Comx_0"));
  program.Click(QStringLiteral("cmdeGK"));
  Screen card(SideWindow(QStringLiteral("Form_egK_Info")));
  EXPECT_EQ(card.Text(QStringLiteral("Label3")),
            u"ICC Serial Number:       0x80276001230000000017");
  EXPECT_EQ(card.Text(QStringLiteral("Label11")), u"Status:            30");
}

}  // namespace
}  // namespace kartocheck::test
