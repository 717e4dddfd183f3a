#include "diagnosis/read_loop.h"

#include <deque>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct LoopRow {
  const char* sentence;
  bool checksPort = true;
  std::deque<Readiness> checks;     // results of the status checks, in order
  std::deque<Answer> answers{};     // to the insert-card prompts
  std::deque<ReadOutcome> reads{};  // outcomes of the reads
  QString hint{};
  std::vector<std::string> steps;  // in the order the user sees them

  friend std::ostream& operator<<(std::ostream& out, const LoopRow& row) {
    return out << row.sentence;
  }
};

template <typename T>
T Next(std::deque<T>& values) {
  if (values.empty()) {
    ADD_FAILURE() << "one round too many";
    return {};
  }
  const T value = values.front();
  values.pop_front();
  return value;
}

class ReadLoopTest : public testing::TestWithParam<LoopRow> {};

TEST_P(ReadLoopTest, Steps) {
  LoopRow row = GetParam();
  FakeDialogs dialogs;
  FakeDisplay display;
  dialogs.answers = row.answers;
  std::vector<std::string> steps;
  const auto statusText = [&] {
    while (!display.statusTexts.empty()) {
      steps.push_back(display.statusTexts.front().toStdString());
      display.statusTexts.erase(display.statusTexts.begin());
    }
  };
  const auto note = [&](const char* step) {
    statusText();
    steps.emplace_back(step);
  };
  ReadLoopSteps loop{
      .checkPort = [&] { note("port check"); },
      .checkStatus =
          [&] {
            note("status check");
            return Next(row.checks);
          },
      .hint =
          [&] {
            note("hint");
            return row.hint;
          },
      .insertCardPrompt =
          [&] {
            note("prompt");
            return Question{
                .title = QString(), .text = QStringLiteral("?"), .buttons = Buttons::OkCancel};
          },
      .read =
          [&] {
            note("read");
            return Next(row.reads);
          },
      .showSlot = [&] { note("show slot"); },
  };
  if (!row.checksPort) loop.checkPort = nullptr;
  RunReadLoop(loop, dialogs, display);
  statusText();
  EXPECT_EQ(steps, row.steps);
  EXPECT_TRUE(row.checks.empty());
  EXPECT_TRUE(row.reads.empty());
  EXPECT_TRUE(dialogs.answers.empty());
}

constexpr const char* Prompting = "Die Krankenversichertendaten lesen";
constexpr const char* Reading = "Die Krankenversichertendaten werden gelesen";
constexpr const char* Shown = "Die Krankenversichertendaten werden angezeigt";

INSTANTIATE_TEST_SUITE_P(
    Diagnosis, ReadLoopTest,
    testing::ValuesIn(std::vector<LoopRow>{
        {.sentence = "a card that is ready is read without a prompt",
         .checks = {Readiness::Ready},
         .reads = {ReadOutcome::Done},
         .steps = {Prompting, "port check", "status check", Reading, "read", "show slot", Shown}},
        {.sentence = "an action that does not check the port",
         .checksPort = false,
         .checks = {Readiness::Ready},
         .reads = {ReadOutcome::Done},
         .steps = {Prompting, "status check", Reading, "read", "show slot", Shown}},
        {.sentence = "without a card the prompt is shown, OK reads",
         .checks = {Readiness::NotReady},
         .answers = {Answer::Ok},
         .reads = {ReadOutcome::Done},
         .steps = {Prompting, "port check", "status check", "hint", "prompt", Reading, "read",
                   "show slot", Shown}},
        {.sentence = "Cancel at the prompt ends the loop without a read",
         .checks = {Readiness::NotReady},
         .answers = {Answer::Cancel},
         .steps = {Prompting, "port check", "status check", "hint", "prompt"}},
        {.sentence = "what keeps the card from being read is told before it is asked for",
         .checks = {Readiness::NotReady, Readiness::NotReady},
         .answers = {Answer::Ok, Answer::Cancel},
         .reads = {ReadOutcome::TryAgain},
         .hint = QStringLiteral("Ein Hinweis."),
         .steps = {Prompting, "port check", "status check", "hint", "Ein Hinweis.", "prompt",
                   Reading, "read", "show slot", Shown, Prompting, "port check", "status check",
                   "hint", "Ein Hinweis.", "prompt"}},
        {.sentence = "a failed read ends the loop",
         .checks = {Readiness::Ready},
         .reads = {ReadOutcome::Failed},
         .steps = {Prompting, "port check", "status check", Reading, "read", "show slot", Shown}},
        {.sentence = "another try repeats everything",
         .checks = {Readiness::Ready, Readiness::Ready, Readiness::Ready},
         .reads = {ReadOutcome::TryAgain, ReadOutcome::TryAgain, ReadOutcome::Done},
         .steps = {Prompting, "port check", "status check", Reading, "read", "show slot", Shown,
                   Prompting, "port check", "status check", Reading, "read", "show slot", Shown,
                   Prompting, "port check", "status check", Reading, "read", "show slot", Shown}},
        {.sentence = "Cancel in the second round",
         .checks = {Readiness::Ready, Readiness::NotReady},
         .answers = {Answer::Cancel},
         .reads = {ReadOutcome::TryAgain},
         .steps = {Prompting, "port check", "status check", Reading, "read", "show slot", Shown,
                   Prompting, "port check", "status check", "hint", "prompt"}},
    }),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
