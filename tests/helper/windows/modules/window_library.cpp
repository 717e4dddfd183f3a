// A CT-API library that works as a window does: what it starts in one call is done by messages to
// its window, which come between that call and the next. It is called by the names that a compiler
// gives to functions of the system's calling convention.

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "ctnrv32.h"

namespace {

constexpr UINT Step = WM_APP;
constexpr int Steps = 3;

int stepsDone = 0;
DWORD threadOfLoading = ::GetCurrentThreadId();
HWND window = nullptr;

LRESULT CALLBACK OnMessage(HWND target, UINT message, WPARAM number, LPARAM data) {
  if (message != Step) return ::DefWindowProcW(target, message, number, data);
  ++stepsDone;
  if (stepsDone < Steps) ::PostMessageW(target, Step, 0, 0);
  // Somebody who believes that the thread is a program's.
  if (stepsDone == Steps) ::PostQuitMessage(0);
  return 0;
}

HWND MakeWindow() {
  constexpr const wchar_t* Name = L"KartoCheckTestLibrary";
  WNDCLASSW kind{};
  kind.lpfnWndProc = &OnMessage;
  kind.hInstance = ::GetModuleHandleW(nullptr);
  kind.lpszClassName = Name;
  ::RegisterClassW(&kind);
  return ::CreateWindowExW(0, Name, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, kind.hInstance,
                           nullptr);
}

}  // namespace

// -1: not on the thread that loaded the library; -127: there is no window.
std::int8_t CTNRV32_CALL CTDENRVT1_init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  if (::GetCurrentThreadId() != threadOfLoading) return -1;
  window = MakeWindow();
  if (window == nullptr) return -127;
  ::PostMessageW(window, Step, 0, 0);
  return 0;
}

// Answers the number of steps that are done.
std::int8_t CTNRV32_CALL CTDENRVT1_data(std::uint16_t /*ctn*/, std::uint8_t* /*dad*/,
                                        std::uint8_t* /*sad*/, std::uint16_t /*lenc*/,
                                        const std::uint8_t* command, std::uint16_t* lenr,
                                        std::uint8_t* response) {
  // What it prints, and what it reads, is not the program's.
  std::puts("noise");
  std::fflush(stdout);
  DWORD count = 0;
  ::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), "noise", 5, &count, nullptr);
  if (std::getchar() != EOF) return -10;
  if (*command == 0xAB) std::abort();
  *lenr = 1;
  *response = static_cast<std::uint8_t>(stepsDone);
  return 0;
}

std::int8_t CTNRV32_CALL CTDENRVT1_close(std::uint16_t /*ctn*/) {
  ::Sleep(INFINITE);
  return 0;
}

std::int8_t CTNRV32_CALL CT_get_baudrate(std::uint16_t /*ctn*/, std::int32_t* baud) {
  *baud = 38'400;
  return 0;
}
