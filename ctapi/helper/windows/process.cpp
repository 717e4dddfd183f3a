#include "helper/process.h"

#include <windows.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <tlhelp32.h>

#include "helper/windows/window_raiser.h"
#include "protocol/windows/handle.h"

namespace ctapi::helper {

namespace {

std::optional<DWORD> NumberOfParent() {
  const Handle all(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  const DWORD self = ::GetCurrentProcessId();
  for (BOOL more = ::Process32FirstW(all.Get(), &entry); more;
       more = ::Process32NextW(all.Get(), &entry)) {
    if (entry.th32ProcessID == self) return entry.th32ParentProcessID;
  }
  return std::nullopt;
}

// In the system's count; 0 where it is not told.
ULONGLONG StartOf(HANDLE process) {
  FILETIME start{};
  FILETIME other{};
  if (!::GetProcessTimes(process, &start, &other, &other, &other)) return 0;
  return static_cast<ULONGLONG>(start.dwHighDateTime) << 32 | start.dwLowDateTime;
}

// Not open where the program has ended. Its number may belong to another process then, which began
// after this one.
Handle OpenProgram() {
  const std::optional<DWORD> number = NumberOfParent();
  if (!number) return {};
  Handle program(::OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, *number));
  const bool isAnother =
      program.IsOpen() && StartOf(program.Get()) > StartOf(::GetCurrentProcess());
  return isAnother ? Handle() : std::move(program);
}

struct Watch {
  Handle Program{};
  Handle HasBegun{};
};

DWORD WINAPI EndWith(void* data) {
  const auto* const watch = static_cast<const Watch*>(data);
  ::SetEvent(watch->HasBegun.Get());
  ::WaitForSingleObject(watch->Program.Get(), INFINITE);
  EndAtOnce();
}

// A thread that has begun needs nothing that a library could hold while it is loaded or called.
void EndWithProgram() {
  static Watch watch{.Program = OpenProgram(),
                     .HasBegun = Handle(::CreateEventW(nullptr, TRUE, FALSE, nullptr))};
  if (!watch.Program.IsOpen()) EndAtOnce();
  const Handle thread(::CreateThread(nullptr, 0, &EndWith, &watch, 0, nullptr));
  if (!thread.IsOpen()) EndAtOnce();
  ::WaitForSingleObject(watch.HasBegun.Get(), INFINITE);
}

// What ends everything on a console (Ctrl-C) goes to the program as well, which decides what
// becomes of the call.
BOOL WINAPI LeaveToProgram(DWORD /*request*/) {
  return TRUE;
}

// The C library would show a box and wait for a click. To the program this is a crash, by the
// number that later C libraries end such a process with.
[[noreturn]] void EndAsCrashed(int /*signal*/) {
  constexpr UINT FastFail = 0xC0000409;
  ::TerminateProcess(::GetCurrentProcess(), FastFail);
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void BelongToProgram() {
  EndWithProgram();
  ::SetConsoleCtrlHandler(&LeaveToProgram, TRUE);
  (void)::_set_error_mode(_OUT_TO_STDERR);
  (void)std::signal(SIGABRT, &EndAsCrashed);
  RaiseNewWindows();
}

std::int64_t ProcessNumber() {
  return ::GetCurrentProcessId();
}

void EndAtOnce() {
  ::TerminateProcess(::GetCurrentProcess(), 0);
  std::_Exit(0);
}

}  // namespace ctapi::helper
