#include <windows.h>

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

#include "helper/windows/helper_session.h"

// The built helper, as a process.
namespace ctapi::helper {
namespace {

using test::HelperSession;

constexpr Message Call(MessageKind kind) {
  return {.Kind = kind, .Ctn = 1, .Pn = 1, .Length = 100};
}

Message DataCall() {
  Message call = Call(MessageKind::Data);
  call.Payload = {0x20, 0x11, 0x00, 0x00, 0x00};
  return call;
}

// How many steps the library has done.
int StepsOf(HelperSession& session) {
  const auto answer = session.Ask(DataCall());
  const bool isAnswer = answer && answer->Kind == MessageKind::Returned && answer->Code == 0 &&
                        answer->Payload.size() == 1;
  EXPECT_TRUE(isAnswer);
  return isAnswer ? answer->Payload[0] : -1;
}

TEST(HelperProcess, LoadsALibraryAndTellsItsFile) {
  HelperSession session({"no-such-library.dll", WINDOW_LIBRARY});
  const auto first = session.Receive();
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->Kind, MessageKind::Loaded);
  EXPECT_TRUE(first->Text().ends_with("window_library.dll")) << first->Text();
}

TEST(HelperProcess, TellsWhyALibraryCannotBeLoaded) {
  HelperSession session({"C:\\no such folder\\library.dll"});
  const auto first = session.Receive();
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->Kind, MessageKind::NotLoadable);
  EXPECT_EQ(first->Trouble, static_cast<std::uint8_t>(LoadTrouble::FileMissing));
  EXPECT_EQ(first->Text(), "C:\\no such folder\\library.dll");
  EXPECT_EQ(session.ExitCode(), DWORD{0});
}

// Every piece of work is done by messages between two calls, of which nobody else takes any.
TEST(HelperProcess, ServesTheWindowsOfTheLibraryBetweenTheCalls) {
  HelperSession session({WINDOW_LIBRARY});
  ASSERT_TRUE(session.Receive().has_value());
  const auto opened = session.Ask(Call(MessageKind::Init));
  ASSERT_TRUE(opened.has_value());
  EXPECT_EQ(opened->Code, 0);
  constexpr int All = 3;
  int steps = 0;
  for (int i = 0; i < 100 && steps < All; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    steps = StepsOf(session);
  }
  EXPECT_EQ(steps, All);
  EXPECT_EQ(StepsOf(session), All) << "it goes on though the library has asked its thread to end";
  session.CloseChannel();
  EXPECT_EQ(session.ExitCode(), DWORD{0});
}

TEST(HelperProcess, TellsAnAbortAsACrash) {
  HelperSession session({WINDOW_LIBRARY});
  ASSERT_TRUE(session.Receive().has_value());
  Message abort = DataCall();
  abort.Payload[0] = 0xAB;
  EXPECT_EQ(session.Ask(abort), std::nullopt);
  EXPECT_EQ(session.ExitCode(), DWORD{0xC0000409});
}

TEST(HelperProcess, EndsWithAProgramThatClosesTheChannel) {
  HelperSession session({WINDOW_LIBRARY});
  ASSERT_TRUE(session.Receive().has_value());
  session.CloseChannel();
  EXPECT_EQ(session.ExitCode(), DWORD{0});
}

TEST(HelperProcess, EndsWhereWhatComesIsNoMessage) {
  HelperSession session({WINDOW_LIBRARY});
  ASSERT_TRUE(session.Receive().has_value());
  session.Send(Message{.Kind = MessageKind{0x7F}});
  EXPECT_EQ(session.Receive(), std::nullopt);
  EXPECT_EQ(session.ExitCode(), DWORD{0});
}

constexpr const char* PartVariable = "KARTOCHECK_TEST_PART";

// Not a test by itself: a program that ends in the middle of a call that does not return. It hands
// its helper on as the exit code.
TEST(HelperProcess, PartOfAProgramThatIsKilled) {
  if (std::getenv(PartVariable) == nullptr) GTEST_SKIP() << "the next test starts it";
  const HelperSession session({WINDOW_LIBRARY});
  session.Send(Call(MessageKind::Close));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  ::TerminateProcess(::GetCurrentProcess(), ::GetProcessId(session.Process()));
}

TEST(HelperProcess, EndsWithAProgramThatIsKilledDuringACall) {
  ::SetEnvironmentVariableA(PartVariable, "program");
  std::wstring file(MAX_PATH, L'\0');
  file.resize(::GetModuleFileNameW(nullptr, file.data(), MAX_PATH));
  std::wstring line = L'"' + file + L"\" --gtest_filter=*PartOfAProgramThatIsKilled";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  ASSERT_TRUE(::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &start, &started));
  ::SetEnvironmentVariableA(PartVariable, nullptr);
  const Handle program(started.hProcess);
  const Handle thread(started.hThread);
  ASSERT_EQ(::WaitForSingleObject(program.Get(), 20'000), WAIT_OBJECT_0);
  DWORD number = 0;
  ::GetExitCodeProcess(program.Get(), &number);
  ASSERT_GT(number, 1U);
  const Handle helper(::OpenProcess(SYNCHRONIZE, FALSE, number));
  if (!helper.IsOpen()) return;  // it has ended
  EXPECT_EQ(::WaitForSingleObject(helper.Get(), 5'000), WAIT_OBJECT_0);
}

}  // namespace
}  // namespace ctapi::helper
