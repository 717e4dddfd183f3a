#include "platform/standard_streams.h"

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include "support/pseudo_terminal.h"

// A person at standard input, by a pseudo-terminal.

namespace kartocheck::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Longer than the moment that is waited for, shorter than a person's patience.
constexpr milliseconds AtLeast(20);
constexpr milliseconds AtMost(5'000);

// Runs with this descriptor as a standard stream, and puts the old one back.
class Redirected {
 public:
  Redirected(StandardStream stream, int descriptor)
      : stream_(static_cast<int>(stream)), before_(::dup(stream_)) {
    ::dup2(descriptor, stream_);
  }
  ~Redirected() {
    ::dup2(before_, stream_);
    ::close(before_);
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

 private:
  int stream_;
  int before_;
};

struct Waited {
  bool hasCome = false;
  milliseconds time{0};
};

Waited WaitAt(int descriptor) {
  const Redirected input(StandardStream::Input, descriptor);
  const auto start = Clock::now();
  const bool hasCome = WaitForInput();
  return {hasCome, std::chrono::duration_cast<milliseconds>(Clock::now() - start)};
}

TEST(WaitForInputTest, ComesBackSoonWhereNobodyTypes) {
  const PseudoTerminal keyboard;
  const Waited waited = WaitAt(keyboard.Near());
  EXPECT_FALSE(waited.hasCome);
  EXPECT_GE(waited.time, AtLeast) << "the processor is not to be kept busy";
  EXPECT_LE(waited.time, AtMost);
}

TEST(WaitForInputTest, WaitsForAWholeLine) {
  const PseudoTerminal keyboard;
  keyboard.Type("j");
  EXPECT_FALSE(WaitAt(keyboard.Near()).hasCome);
  keyboard.Type("\n");
  EXPECT_TRUE(WaitAt(keyboard.Near()).hasCome);
}

TEST(WaitForInputTest, EndOfFileAndAHangUpAreInput) {
  const PseudoTerminal typing;
  typing.Type("\x04");
  EXPECT_TRUE(WaitAt(typing.Near()).hasCome);
  PseudoTerminal keyboard;
  keyboard.HangUp();
  EXPECT_TRUE(WaitAt(keyboard.Near()).hasCome);
}

// A request to end the program comes as a signal; the caller looks at it before it waits again.
TEST(WaitForInputTest, ASignalIsNoInput) {
  const PseudoTerminal keyboard;
  struct sigaction action{};
  struct sigaction before{};
  action.sa_handler = [](int) {};
  ASSERT_EQ(::sigaction(SIGALRM, &action, &before), 0);
  const itimerval soon{.it_interval = {0, 0}, .it_value = {0, 10'000}};
  ASSERT_EQ(::setitimer(ITIMER_REAL, &soon, nullptr), 0);
  EXPECT_FALSE(WaitAt(keyboard.Near()).hasCome);
  ::sigaction(SIGALRM, &before, nullptr);
}

TEST(WaitForInputTest, WhatIsNoTerminalIsReadAtOnce) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe(pipe.data()), 0);
  const Waited waited = WaitAt(pipe[0]);
  EXPECT_TRUE(waited.hasCome);
  EXPECT_LT(waited.time, AtLeast);
  ::close(pipe[0]);
  ::close(pipe[1]);
}

TEST(IsTerminalTest, TellsEachStream) {
  const PseudoTerminal keyboard;
  const int file = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const StandardStream stream :
       {StandardStream::Input, StandardStream::Output, StandardStream::Error}) {
    {
      const Redirected redirected(stream, keyboard.Near());
      EXPECT_TRUE(IsTerminal(stream));
    }
    const Redirected redirected(stream, file);
    EXPECT_FALSE(IsTerminal(stream));
  }
  ::close(file);
}

TEST(ColumnsOfTest, AreThoseOfTheTerminalAtTheMoment) {
  const PseudoTerminal terminal;
  const Redirected redirected(StandardStream::Error, terminal.Near());
  terminal.SetColumns(132);
  EXPECT_EQ(ColumnsOf(StandardStream::Error), 132);
  terminal.SetColumns(40);
  EXPECT_EQ(ColumnsOf(StandardStream::Error), 40);
}

TEST(ColumnsOfTest, AreUnknownOfWhatDoesNotTell) {
  const PseudoTerminal terminal;
  terminal.SetColumns(0);
  const Redirected redirected(StandardStream::Error, terminal.Near());
  EXPECT_EQ(ColumnsOf(StandardStream::Error), std::nullopt) << "a serial line";
  const int file = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  const Redirected toFile(StandardStream::Output, file);
  EXPECT_EQ(ColumnsOf(StandardStream::Output), std::nullopt);
  ::close(file);
}

}  // namespace
}  // namespace kartocheck::test
