#include "helper/modules/deeds.h"

#include <windows.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

volatile int zero = 0;

// The numbers of a process's handles are multiples of four from 4 on.
template <typename Call>
void ForEachHandle(Call call) {
  constexpr std::uintptr_t Last = 4096;
  for (std::uintptr_t number = 4; number <= Last; number += 4) {
    call(reinterpret_cast<HANDLE>(number));
  }
}

bool IsPipe(HANDLE handle) {
  return ::GetFileType(handle) == FILE_TYPE_PIPE;
}

void Write(HANDLE handle, const std::string& text) {
  DWORD count = 0;
  ::WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
}

void ClearEnvironment() {
  wchar_t* const all = ::GetEnvironmentStringsW();
  for (const wchar_t* entry = all; *entry != L'\0'; entry += std::wcslen(entry) + 1) {
    const std::wstring name(entry, std::wcscspn(entry + 1, L"=") + 1);
    ::SetEnvironmentVariableW(name.c_str(), nullptr);
  }
  ::FreeEnvironmentStringsW(all);
}

// What a C++ exception of the system's own compiler is to everybody else.
void ThrowAsTheSystemsCompiler() {
  constexpr DWORD CppException = 0xE06D7363;
  ::RaiseException(CppException, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

void ServeMessagesForEver() {
  MSG message{};
  while (true) ::GetMessageW(&message, nullptr, 0, 0);
}

}  // namespace

std::map<std::string, Deed> DeedsOfThisSystem() {
  return {
      // Its process ends.
      {"divide", [](const Buffer&) { zero = 53 / zero; }},
      {"illegal", [](const Buffer&) { asm volatile("ud2"); }},
      {"terminate", [](const Buffer&) { ::TerminateProcess(::GetCurrentProcess(), 7); }},
      {"exit-in-thread",
       [](const Buffer&) {
         std::thread([] { std::exit(6); }).detach();
         WaitForEver();
       }},
      {"close-pipes",
       [](const Buffer&) {
         ForEachHandle([](HANDLE handle) {
           if (IsPipe(handle)) ::CloseHandle(handle);
         });
       }},
      {"crash-without-filter",
       [](const Buffer&) {
         ::SetUnhandledExceptionFilter(nullptr);
         DereferenceNull();
       }},

      // It throws, or writes where it must not.
      {"throw-otherwise", [](const Buffer&) { ThrowAsTheSystemsCompiler(); }},

      // It does not come back.
      {"sleep", [](const Buffer&) { ::Sleep(60'000); }},
      {"stop", [](const Buffer&) { ::SuspendThread(::GetCurrentThread()); }},
      {"serve-messages", [](const Buffer&) { ServeMessagesForEver(); }},
      {"read-input-for-ever",
       [](const Buffer&) {
         while (std::getchar() == EOF) ::Sleep(1);
       }},

      // It comes back late.
      {"slow", [](const Buffer&) { ::Sleep(200); }},

      // It goes on, in a process that is another one.
      {"flood",
       [](const Buffer&) { Write(::GetStdHandle(STD_OUTPUT_HANDLE), std::string(100'000, '.')); }},
      {"close-output", [](const Buffer&) { ::CloseHandle(::GetStdHandle(STD_OUTPUT_HANDLE)); }},
      {"ask-to-quit", [](const Buffer&) { ::PostQuitMessage(1); }},
      {"change-directory", [](const Buffer&) { ::SetCurrentDirectoryW(L"C:\\"); }},
      {"change-locale", [](const Buffer&) { std::setlocale(LC_ALL, "German"); }},
      {"clear-environment", [](const Buffer&) { ClearEnvironment(); }},
  };
}

void* SimulatorFunction(const char* name) {
  static const HMODULE library = ::LoadLibraryA(SIMULATOR_LIBRARY);
  return reinterpret_cast<void*>(::GetProcAddress(library, name));
}
