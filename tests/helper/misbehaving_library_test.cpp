#include <QElapsedTimer>
#include <QTimer>

#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "helper/misbehaviours.h"
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
    qputenv("ASAN_OPTIONS", SanitizersLookAway);
    qputenv("KARTOCHECK_SCENARIO", KVK_SCENARIO);
    qputenv("KARTOCHECK_MISBEHAVIOUR", plan.c_str());
  }
  ~Misbehaviour() { qunsetenv("KARTOCHECK_MISBEHAVIOUR"); }
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

INSTANTIATE_TEST_SUITE_P(Helper, LibraryFaultTest, testing::ValuesIn(FaultRows()), SentenceName());

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

INSTANTIATE_TEST_SUITE_P(Helper, HarmlessLibraryTest, testing::ValuesIn(HarmlessDeeds()),
                         SentenceName());

class HangingLibraryTest : public testing::TestWithParam<const char*> {};

// The event loop runs, the call is told to be late, and given up when asked.
TEST_P(HangingLibraryTest, IsGivenUp) {
  const Misbehaviour misbehaviour(GetParam());
  PendingCall pending(LongestStart());
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

  qputenv("KARTOCHECK_MISBEHAVIOUR", "none 0 none");
  EXPECT_EQ(CallAll(library), 0) << "the next open starts a new one";
  EXPECT_EQ(seen.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Helper, HangingLibraryTest, testing::ValuesIn(HangingDeeds()),
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
  qputenv("KARTOCHECK_MISBEHAVIOUR", "none 0 none");
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
