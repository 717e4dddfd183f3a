#include <QElapsedTimer>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/types.h>

#include "main/called_program.h"

// The program is asked to end by signals.

namespace kartocheck::test {
namespace {

// Nothing once it has ended.
void Send(const CalledProgram& program, int signal) {
  const auto process = static_cast<pid_t>(program.ProcessNumber());
  if (process > 0) ::kill(process, signal);
}

class InterruptTest : public testing::TestWithParam<int> {};

TEST_P(InterruptTest, LeavesADocumentThatSaysItIsIncomplete) {
  CalledProgram program(
      {QStringLiteral("--console"), QStringLiteral("--json"), QStringLiteral("--simulate")});
  (void)program.Start();
  program.WaitForOutput("\"ports\"");
  Send(program, GetParam());
  EXPECT_EQ(program.Status(), 130);
  EXPECT_FALSE(program.Document().value(u"complete").toBool(true));
}

// A library that does not come back is waited for no longer than usual.
TEST_P(InterruptTest, EndsACallThatDoesNotComeBack) {
  MisbehavingProgram program(Path(SCENARIOS "/kvk-60.json"), QStringLiteral("data 1 wait"), Json);
  (void)program.Start();
  program.WaitForOutput("\"ports\"");
  Send(program, GetParam());
  EXPECT_EQ(program.Status(), 130);
  EXPECT_FALSE(program.Document().value(u"complete").toBool(true));
}

TEST_P(InterruptTest, AskedForTwiceEndsTheProgramAtOnce) {
  MisbehavingProgram program(Path(SCENARIOS "/kvk-60.json"), QStringLiteral("init 1 deaf"), Json);
  QProcess& process = program.Start();
  program.WaitForOutput("\"ports\"");
  QElapsedTimer time;
  time.start();
  Send(program, GetParam());
  // Two requests of one kind that come together are one.
  while (process.state() == QProcess::Running && time.elapsed() < PatienceMs) {
    process.waitForFinished(20);
    Send(program, GetParam());
  }
  EXPECT_LT(time.elapsed(), 2'000);
  EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
  EXPECT_EQ(process.exitCode(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Program, InterruptTest, testing::Values(SIGINT, SIGTERM));

}  // namespace
}  // namespace kartocheck::test
