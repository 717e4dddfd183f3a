#include "platform/next_program.h"

#include <QDir>
#include <windows.h>

#include <string>
#include <string_view>

#include "protocol/windows/handle.h"

namespace kartocheck {

namespace {

// What stands behind the program's name, as it was typed. The name ends at the first blank that no
// quotation marks enclose.
std::wstring_view ArgumentsIn(std::wstring_view commandLine) {
  bool isQuoted = false;
  for (std::size_t at = 0; at < commandLine.size(); ++at) {
    const wchar_t character = commandLine[at];
    if (character == L'"') isQuoted = !isQuoted;
    if (!isQuoted && (character == L' ' || character == L'\t')) return commandLine.substr(at);
  }
  return {};
}

HANDLE Inherited(DWORD stream) {
  const HANDLE handle = ::GetStdHandle(stream);
  ::SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  return handle;
}

// The other program is at the same console, is asked to end as well, and decides.
BOOL WINAPI LeaveToNextProgram(DWORD /*request*/) {
  return TRUE;
}

}  // namespace

// The system keeps the command line as it was typed, in every alphabet.
std::optional<int> GoOnAs(const QString& file, char** /*arguments*/) {
  const std::wstring program = QDir::toNativeSeparators(file).toStdWString();
  std::wstring commandLine = L'"' + program + L'"';
  commandLine += ArgumentsIn(::GetCommandLineW());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = Inherited(STD_INPUT_HANDLE);
  startup.hStdOutput = Inherited(STD_OUTPUT_HANDLE);
  startup.hStdError = Inherited(STD_ERROR_HANDLE);
  PROCESS_INFORMATION started{};
  if (::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       nullptr, &startup, &started) == 0) {
    return std::nullopt;
  }
  const ctapi::Handle process(started.hProcess);
  const ctapi::Handle thread(started.hThread);
  ::SetConsoleCtrlHandler(&LeaveToNextProgram, TRUE);
  ::AllowSetForegroundWindow(started.dwProcessId);
  ::WaitForSingleObject(process.Get(), INFINITE);
  DWORD status = 0;
  ::GetExitCodeProcess(process.Get(), &status);
  return static_cast<int>(status);
}

}  // namespace kartocheck
