#include <QAction>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QSessionManager>
#include <QTest>

#include <gtest/gtest.h>
#include <new>

#include "gui/support/box_answerer.h"
#include "gui/support/practice.h"
#include "gui/support/program.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

void ExpectExitQuestion(const SeenBox& box) {
  EXPECT_EQ(box.title, u"Beendet KartoCheck ");
  EXPECT_EQ(box.text, u" Möchten Sie das Programm beenden? ");
  EXPECT_EQ(box.icon, QMessageBox::Question);
  EXPECT_EQ(box.buttons, (QStringList{QStringLiteral("Ja"), QStringLiteral("Nein")}));
}

TEST(ClosingTest, AnswerNoLeavesEverythingRunning) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  BoxAnswerer user({PressButton(QMessageBox::No)});
  EXPECT_FALSE(program.window.close());
  EXPECT_TRUE(program.window.isVisible());
  ASSERT_EQ(user.seen.size(), 1U);
  ExpectExitQuestion(user.seen[0]);

  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_EQ(program.Text(QStringLiteral("Labl_Wert_0")), u"AOK Süd");
  EXPECT_TRUE(program.window.isVisible());
}

TEST(ClosingTest, AnswerYesCloses) {
  Program program;
  BoxAnswerer user({PressButton(QMessageBox::Yes)});
  EXPECT_TRUE(program.window.close());
  EXPECT_FALSE(program.window.isVisible());
}

TEST(ClosingTest, EscapeInTheQuestionCountsAsNo) {
  Program program;
  BoxAnswerer user({PressKey(Qt::Key_Escape)});
  EXPECT_FALSE(program.window.close());
  EXPECT_TRUE(program.window.isVisible());
}

TEST(ClosingTest, MenuEntryAsksLikeTheCloseBox) {
  Program program;
  auto* quit = program.window.findChild<QAction*>(QStringLiteral("mnuBeenden"));
  BoxAnswerer user({PressButton(QMessageBox::No), PressButton(QMessageBox::Yes)});
  quit->trigger();
  EXPECT_TRUE(WaitUntil([&] { return user.seen.size() == 1; }));
  EXPECT_TRUE(program.window.isVisible());
  quit->trigger();
  EXPECT_TRUE(WaitUntil([&] { return !program.window.isVisible(); }));
  ASSERT_EQ(user.seen.size(), 2U);
  ExpectExitQuestion(user.seen[0]);
  ExpectExitQuestion(user.seen[1]);
}

TEST(ClosingTest, TheProgramItselfClosesWithoutAQuestion) {
  Program program;
  const BoxAnswerer user({});
  program.window.CloseNow();
  EXPECT_FALSE(program.window.isVisible());
}

// The close request comes before each exchange of a read in turn.
TEST(ClosingTest, DuringAnActionIsDeferredToItsEndWithoutAQuestion) {
  constexpr int Exchanges = 10;
  for (int at = 0; at < Exchanges; ++at) {
    Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
    const BoxAnswerer user({});
    int exchanges = 0;
    program.library.beforeExchange = [&](int exchange) {
      ++exchanges;
      if (exchange == at) {
        EXPECT_FALSE(program.window.close());
      }
      EXPECT_TRUE(program.window.isVisible());
    };
    program.Click(QStringLiteral("CmdB_MKt_Test_3"));
    EXPECT_EQ(exchanges, Exchanges);
    EXPECT_FALSE(program.window.isVisible());
    EXPECT_FALSE(program.module.IsLinkOpen());
    EXPECT_FALSE(program.module.ExitRequested);
  }
}

TEST(ClosingTest, DuringAnActionLaterQuestionsCountAsNo) {
  Program program(practice::Identification(1) + practice::SlotIsEmpty(1));
  const BoxAnswerer user({});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 0) {
      EXPECT_FALSE(program.window.close());
    }
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_FALSE(program.window.isVisible());
}

TEST(SystemCloseTest, ClosesAnIdleWindowWithoutAQuestion) {
  Program program;
  const BoxAnswerer user({});
  program.window.CloseForSystem();
  EXPECT_FALSE(program.window.isVisible());
}

TEST(SystemCloseTest, DuringAnActionWaitsForItsEnd) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  const BoxAnswerer user({});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 3) program.window.CloseForSystem();
    EXPECT_TRUE(program.window.isVisible());
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_FALSE(program.window.isVisible());
  EXPECT_FALSE(program.module.IsLinkOpen());
}

TEST(SystemCloseTest, CloseBoxAfterItDuringTheSameActionAsksNothing) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  const BoxAnswerer user({});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 3) program.window.CloseForSystem();
    if (exchange == 4) {
      EXPECT_FALSE(program.window.close());
    }
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_FALSE(program.window.isVisible());
}

TEST(SystemCloseTest, EndsTheExitQuestion) {
  Program program;
  BoxAnswerer user({[&](QMessageBox& /*box*/) { program.window.CloseForSystem(); }});
  program.window.close();
  EXPECT_EQ(user.seen.size(), 1U);
  EXPECT_FALSE(program.window.isVisible());
}

// The record is not erased; reset and close are sent all the same.
TEST(SystemCloseTest, AnswersAnOpenQuestionOfAnActionWithNo) {
  Program program(practice::MobileIdentification(1) + R"(
    open 1
    > 20 12 01 00 01 01
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    close
    open 1
    > 20 11 00 00 00
    < 95 00
    > 20 12 01 00 01 01
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    > 20 11 00 00 00
    < 95 00
    close
  )");
  BoxAnswerer user({[&](QMessageBox& /*box*/) { program.window.CloseForSystem(); }});
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_EQ(user.seen.size(), 1U);
  EXPECT_FALSE(program.window.isVisible());
}

TEST(SystemCloseTest, SuppressesMessagesThatComeAfterIt) {
  Program program;
  const BoxAnswerer user({});
  program.window.CloseForSystem();
  program.window.Boxes().Tell(Icon::Critical, QStringLiteral("Titel"), QStringLiteral("Text"));
  EXPECT_EQ(program.window.Boxes().Ask({.title = {}, .text = {}, .buttons = Buttons::OkCancel}),
            Answer::Cancel);
  EXPECT_EQ(program.window.Boxes().Ask({.title = {}, .text = {}, .buttons = Buttons::YesNo}),
            Answer::No);
}

TEST(SystemCloseTest, TheEndOfTheDesktopSessionIsOne) {
  Program program;
  const BoxAnswerer user({});
  // Nobody looks at the session manager, and there is no way to make one outside of Qt.
  alignas(QSessionManager) std::array<std::byte, sizeof(QSessionManager)> manager{};
  Q_EMIT qApp->commitDataRequest(*reinterpret_cast<QSessionManager*>(manager.data()));
  EXPECT_FALSE(program.window.isVisible());
}

}  // namespace
}  // namespace kartocheck::test
