#include <QElapsedTimer>
#include <QTimer>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "protocol/return_code.h"
#include "support/loaded_library.h"
#include "support/misbehaviour.h"
#include "support/sentence_name.h"

// Whatever the library does to its process: the program gets the answer, or the reason why there is
// none, and goes on.

namespace kartocheck::test {
namespace {

using std::chrono::milliseconds;

// What a call does to the library's process, as modules/misbehaving_library.cpp understands it.
class Misbehaviour {
 public:
  explicit Misbehaviour(const std::string& plan) {
    ::setenv("ASAN_OPTIONS", SanitizersLookAway, 1);
    ::setenv("KARTOCHECK_SCENARIO", KVK_SCENARIO, 1);
    ::setenv("KARTOCHECK_MISBEHAVIOUR", plan.c_str(), 1);
  }
  ~Misbehaviour() { ::unsetenv("KARTOCHECK_MISBEHAVIOUR"); }
  Misbehaviour(const Misbehaviour&) = delete;
  Misbehaviour& operator=(const Misbehaviour&) = delete;
};

CtApiLibrary Misbehaving(PendingCall& pending) {
  return LoadedLibrary({QStringLiteral(MISBEHAVING_LIBRARY)}, pending);
}

std::int8_t ResetTerminal(CtApi& library) {
  constexpr std::array<std::uint8_t, 5> ResetCt{0x20, 0x11, 0x00, 0x00, 0x00};
  std::array<std::uint8_t, 4098> response{};
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  std::uint16_t length = 0;
  const std::int8_t code = library.Data(1, dad, sad, ResetCt, response, length);
  if (code == 0) {
    EXPECT_EQ(length, 2);
  }
  return code;
}

std::int8_t CallAll(CtApi& library) {
  std::int32_t baud = 0;
  for (const std::int8_t code : {library.Init(1, 1), library.GetBaudrate(1, baud),
                                 ResetTerminal(library), library.Close(1)}) {
    if (code != 0) return code;
  }
  return 0;
}

void ExpectThatTheNextStartWorks() {
  const Misbehaviour none("none 0 none");
  PendingCall pending;
  CtApiLibrary library = Misbehaving(pending);
  EXPECT_EQ(CallAll(library), 0);
}

struct FaultRow {
  const char* plan;
  LibraryFaultKind kind;
  int number = 0;

  friend std::ostream& operator<<(std::ostream& out, const FaultRow& row) {
    return out << row.plan;
  }
};

class LibraryFaultTest : public testing::TestWithParam<FaultRow> {};

TEST_P(LibraryFaultTest, IsToldWithItsReason) {
  const FaultRow& row = GetParam();
  {
    const Misbehaviour misbehaviour(row.plan);
    PendingCall pending;
    CtApiLibrary library = Misbehaving(pending);
    try {
      (void)CallAll(library);
      FAIL() << "nothing happened";
    } catch (const LibraryUnusable& failure) {
      EXPECT_EQ(failure.Fault, (LibraryFault{.Kind = row.kind, .Number = row.number}));
    }
  }
  ExpectThatTheNextStartWorks();
}

constexpr auto BySignal = LibraryFaultKind::EndedBySignal;
constexpr auto WithStatus = LibraryFaultKind::EndedWithStatus;
constexpr auto Overrun = LibraryFaultKind::Overrun;

INSTANTIATE_TEST_SUITE_P(Helper, LibraryFaultTest,
                         testing::ValuesIn(std::vector<FaultRow>{
                             {"load 1 crash", BySignal, SIGSEGV},
                             {"load 1 exit-3", WithStatus, 3},
                             {"load 1 throw", BySignal, SIGABRT},
                             {"init 1 crash", BySignal, SIGSEGV},
                             {"baud 1 crash", BySignal, SIGSEGV},
                             {"data 1 crash", BySignal, SIGSEGV},
                             {"close 1 crash", BySignal, SIGSEGV},
                             {"init 1 exit", WithStatus, 0},
                             {"baud 1 exit", WithStatus, 0},
                             {"close 1 exit", WithStatus, 0},
                             {"data 1 abort", BySignal, SIGABRT},
                             {"data 1 divide", BySignal, SIGFPE},
                             {"data 1 illegal", BySignal, SIGILL},
                             {"data 1 bus", BySignal, SIGBUS},
                             {"data 1 kill", BySignal, SIGKILL},
                             {"data 1 overflow", BySignal, SIGSEGV},
                             {"data 1 double-free", BySignal, SIGABRT},
                             {"data 1 alarm", BySignal, SIGALRM},
                             {"data 1 exit", WithStatus, 0},
                             {"data 1 exit-3", WithStatus, 3},
                             {"data 1 quick-exit", WithStatus, 4},
                             {"data 1 underscore-exit", WithStatus, 5},
                             {"data 1 exit-in-thread", WithStatus, 6},
                             {"data 1 crash-in-thread", BySignal, SIGSEGV},
                             {"data 1 throw-in-thread", BySignal, SIGABRT},
                             {"data 1 parent-leaves", WithStatus, 7},
                             {"data 1 close-descriptors", WithStatus, 0},
                             {"data 1 close-upper-descriptors", WithStatus, 0},
                             {"init 1 throw", LibraryFaultKind::Threw},
                             {"baud 1 throw", LibraryFaultKind::Threw},
                             {"data 1 throw", LibraryFaultKind::Threw},
                             {"data 1 throw-int", LibraryFaultKind::Threw},
                             {"close 1 throw", LibraryFaultKind::Threw},
                             {"data 1 write-behind", Overrun},
                             {"data 1 write-far-behind", Overrun},
                             {"data 1 write-64k", Overrun},
                             {"data 1 write-before", Overrun},
                             {"data 1 write-far-before", Overrun},
                             {"data 1 write-to-all", LibraryFaultKind::Garbled},
                         }),
                         SentenceName());

class HarmlessLibraryTest : public testing::TestWithParam<const char*> {};

TEST_P(HarmlessLibraryTest, IsNotFeltByTheProgram) {
  {
    const Misbehaviour misbehaviour(GetParam());
    PendingCall pending;
    CtApiLibrary library = Misbehaving(pending);
    EXPECT_EQ(CallAll(library), 0);
    EXPECT_EQ(CallAll(library), 0) << "after it as well";
  }
  ExpectThatTheNextStartWorks();
}

INSTANTIATE_TEST_SUITE_P(Helper, HarmlessLibraryTest,
                         testing::Values("data 1 print", "data 1 flood", "data 1 close-output",
                                         "data 1 fork", "init 1 fork", "data 1 block-signals",
                                         "data 1 ignore-signals", "data 1 change-directory",
                                         "data 1 change-locale", "data 1 clear-environment",
                                         "data 1 change-mask", "data 1 no-more-descriptors",
                                         "data 1 hang-at-end", "data 1 crash-at-end"),
                         SentenceName());

class HangingLibraryTest : public testing::TestWithParam<const char*> {};

// The event loop runs, the call is told to be late, and given up when asked.
TEST_P(HangingLibraryTest, IsGivenUp) {
  const Misbehaviour misbehaviour(GetParam());
  PendingCall pending(milliseconds(60));
  CtApiLibrary library = Misbehaving(pending);
  std::vector<bool> seen;
  int ticks = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, [&ticks] { ++ticks; });
  ticking.start(milliseconds(5));
  pending.Late().Watch([&](bool isLate) {
    seen.push_back(isLate);
    if (isLate) QTimer::singleShot(milliseconds(30), [&pending] { pending.GiveUp(); });
  });

  EXPECT_EQ(CallAll(library), ctapi::code::HtsiError);
  EXPECT_EQ(seen, (std::vector<bool>{false, true, false}));
  EXPECT_GE(ticks, 3) << "the window lives";

  std::int32_t baud = 0;
  EXPECT_EQ(ResetTerminal(library), ctapi::code::HtsiError) << "there is no library any more";
  EXPECT_EQ(library.GetBaudrate(1, baud), ctapi::code::HtsiError);
  EXPECT_EQ(library.Close(1), ctapi::code::HtsiError);
  EXPECT_EQ(library.InfoOf(1).Name, "");

  ::setenv("KARTOCHECK_MISBEHAVIOUR", "none 0 none", 1);
  EXPECT_EQ(CallAll(library), 0) << "the next open starts a new one";
  EXPECT_EQ(seen.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Helper, HangingLibraryTest,
                         testing::Values("load 1 wait", "init 1 sleep", "init 1 wait",
                                         "baud 1 wait", "data 1 sleep", "data 1 wait",
                                         "data 1 spin", "data 1 stop", "data 1 deaf",
                                         "data 1 read-input-for-ever", "close 1 wait"),
                         SentenceName());

TEST(PendingCallTest, IsGivenUpByItselfOnceTheProgramIsToEnd) {
  const Misbehaviour misbehaviour("data 1 wait");
  PendingCall pending(milliseconds(50));
  CtApiLibrary library = Misbehaving(pending);
  pending.GiveUpWhateverIsLate();
  EXPECT_EQ(CallAll(library), ctapi::code::HtsiError);
}

TEST(PendingCallTest, IsGivenUpBeforeItIsLateByWhoeverWillNotWait) {
  const Misbehaviour misbehaviour("data 1 sleep");
  PendingCall pending(milliseconds(300));
  CtApiLibrary library = Misbehaving(pending);
  ASSERT_EQ(library.Init(1, 1), 0);
  bool wasLate = false;
  pending.Late().Watch([&](bool isLate) { wasLate = wasLate || isLate; });
  QTimer::singleShot(milliseconds(100), [&pending] { pending.GiveUp(); });
  EXPECT_EQ(ResetTerminal(library), ctapi::code::HtsiError);
  EXPECT_FALSE(wasLate);
}

// What a library tells of its ports nobody waits for long, and nothing that it does there is fatal.
class PortInfoFaultTest : public testing::TestWithParam<const char*> {};

TEST_P(PortInfoFaultTest, LeavesThePortWithoutAName) {
  const Misbehaviour misbehaviour(GetParam());
  PendingCall pending;
  CtApiLibrary library = Misbehaving(pending);
  ASSERT_EQ(library.Init(1, 1), 0);
  EXPECT_EQ(library.InfoOf(1).Name, "");
  ::setenv("KARTOCHECK_MISBEHAVIOUR", "none 0 none", 1);
  EXPECT_EQ(CallAll(library), 0);
}

INSTANTIATE_TEST_SUITE_P(Helper, PortInfoFaultTest,
                         testing::Values("info 1 crash", "info 1 exit", "info 1 throw",
                                         "info 1 write-behind", "info 1 wait"),
                         SentenceName());

// Nobody asks it while a call is under way: the answer would not be its own.
TEST(PortInfoTest, IsNotAskedWhileACallIsUnderWay) {
  const Misbehaviour misbehaviour("data 1 wait");
  PendingCall pending(milliseconds(50));
  CtApiLibrary library = Misbehaving(pending);
  ASSERT_EQ(library.Init(1, 1), 0);
  bool isAsked = false;
  pending.Late().Watch([&](bool isLate) {
    if (!isLate) return;
    isAsked = true;
    EXPECT_EQ(library.InfoOf(1).Name, "");
    pending.GiveUp();
  });
  EXPECT_EQ(ResetTerminal(library), ctapi::code::HtsiError);
  EXPECT_TRUE(isAsked);
}

}  // namespace
}  // namespace kartocheck::test
