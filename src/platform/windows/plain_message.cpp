#include "platform/plain_message.h"

#include <windows.h>

#include <iostream>

#include "platform/windows/console_streams.h"
#include "protocol/windows/handle.h"

namespace kartocheck {

namespace {

bool IsThere(StandardStream stream) {
  const HANDLE handle =
      ::GetStdHandle(stream == StandardStream::Error ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  return ::GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

// Whoever called the program from a console reads it there. The console does not wait for a program
// with a window: its prompt is on the line already.
bool TellAtCallersConsole(const QString& text) {
  const bool isThere = ::AttachConsole(ATTACH_PARENT_PROCESS) != 0 ||
                       ::GetLastError() == ERROR_ACCESS_DENIED;  // there already
  if (!isThere) return false;
  const ctapi::Handle console(::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
  if (!console.IsOpen()) return false;
  ConsoleOutput buffer(console.Get());
  std::ostream(&buffer) << '\n' << text.toStdString() << std::endl;
  return true;
}

}  // namespace

void TellPlainly(StandardStream stream, const QString& text) {
  const bool isError = stream == StandardStream::Error;
  if (IsThere(stream)) {
    (isError ? std::cerr : std::cout) << text.toStdString() << '\n';
  } else if (!TellAtCallersConsole(text)) {
    ::MessageBoxW(nullptr, text.toStdWString().c_str(), L"KartoCheck",
                  MB_OK | MB_SETFOREGROUND | (isError ? MB_ICONERROR : MB_ICONINFORMATION));
  }
}

}  // namespace kartocheck
