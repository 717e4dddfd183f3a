#include "app/closing_dialogs.h"

#include <gtest/gtest.h>

#include "support/fake_dialogs.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

Question With(Buttons buttons) {
  return {.title = QStringLiteral("title"), .text = QStringLiteral("text"), .buttons = buttons};
}

TEST(ClosingDialogsTest, PassesEveryBoxOnAndTheAnswerBack) {
  FakeDialogs frontEnd;
  const bool exitRequested = false;
  ClosingDialogs dialogs(frontEnd, exitRequested);
  frontEnd.answers = {Answer::Yes, Answer::Ok};
  dialogs.Tell(Icon::Critical, QStringLiteral("title"), QStringLiteral("message"));
  EXPECT_EQ(dialogs.Ask(With(Buttons::YesNo)), Answer::Yes);
  EXPECT_EQ(dialogs.Ask(With(Buttons::OkCancel)), Answer::Ok);
  ASSERT_EQ(frontEnd.boxes.size(), 3U);
  EXPECT_EQ(frontEnd.boxes[0].text, u"message");
  EXPECT_EQ(frontEnd.boxes[0].icon, Icon::Critical);
}

TEST(ClosingDialogsTest, ShowsNothingOnceTheProgramIsAskedToEnd) {
  FakeDialogs frontEnd;
  bool exitRequested = false;
  ClosingDialogs dialogs(frontEnd, exitRequested);
  exitRequested = true;
  dialogs.Tell(Icon::Critical, QStringLiteral("title"), QStringLiteral("message"));
  EXPECT_EQ(dialogs.Ask(With(Buttons::YesNo)), Answer::No);
  EXPECT_EQ(dialogs.Ask(With(Buttons::OkCancel)), Answer::Cancel);
  EXPECT_TRUE(frontEnd.boxes.empty());
}

}  // namespace
}  // namespace kartocheck::test
