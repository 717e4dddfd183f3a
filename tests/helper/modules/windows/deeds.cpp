#include "helper/modules/deeds.h"

#include <windows.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <process.h>
#include <stdexcept>
#include <thread>

namespace {

volatile int zero = 0;

void DereferenceNull() {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 1;
}

// NOLINTNEXTLINE(misc-no-recursion)
int Recurse(int depth) {
  std::array<volatile char, 4096> frame{};
  frame[0] = static_cast<char>(depth);
  return depth == zero - 1 ? 0 : Recurse(depth + 1) + frame[0];
}

[[noreturn]] void WaitForEver() {
  while (true) ::Sleep(INFINITE);
}

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

const std::map<std::string, Deed>& Deeds() {
  static const std::map<std::string, Deed> deeds{
      // Its process ends.
      {"crash", [](const Buffer&) { DereferenceNull(); }},
      {"abort", [](const Buffer&) { std::abort(); }},
      {"divide", [](const Buffer&) { zero = 53 / zero; }},
      {"illegal", [](const Buffer&) { asm volatile("ud2"); }},
      {"overflow", [](const Buffer&) { (void)Recurse(0); }},
      {"exit", [](const Buffer&) { std::exit(0); }},
      {"exit-3", [](const Buffer&) { std::exit(3); }},
      {"underscore-exit", [](const Buffer&) { ::_exit(5); }},
      {"terminate", [](const Buffer&) { ::TerminateProcess(::GetCurrentProcess(), 7); }},
      {"exit-in-thread",
       [](const Buffer&) {
         std::thread([] { std::exit(6); }).detach();
         WaitForEver();
       }},
      {"crash-in-thread",
       [](const Buffer&) {
         std::thread(&DereferenceNull).detach();
         WaitForEver();
       }},
      {"throw-in-thread",
       [](const Buffer&) { std::thread([] { throw std::runtime_error("lost"); }).join(); }},
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
      {"throw", [](const Buffer&) { throw std::runtime_error("Mustermann"); }},
      {"throw-otherwise", [](const Buffer&) { ThrowAsTheSystemsCompiler(); }},
      {"write-behind", [](const Buffer& buffer) { buffer.Bytes[*buffer.Length] = 0; }},
      {"write-far-behind", [](const Buffer& buffer) { buffer.Bytes[65'534] = 0; }},
      {"write-64k", [](const Buffer& buffer) { std::memset(buffer.Bytes, 0, 65'535); }},
      {"write-before", [](const Buffer& buffer) { buffer.Bytes[-1] = 0; }},
      {"write-far-before", [](const Buffer& buffer) { buffer.Bytes[-4000] = 0; }},

      // It does not come back.
      {"sleep", [](const Buffer&) { ::Sleep(60'000); }},
      {"wait", [](const Buffer&) { WaitForEver(); }},
      {"spin",
       [](const Buffer&) {
         while (zero == 0) {
         }
       }},
      {"stop", [](const Buffer&) { ::SuspendThread(::GetCurrentThread()); }},
      {"serve-messages", [](const Buffer&) { ServeMessagesForEver(); }},
      {"read-input-for-ever",
       [](const Buffer&) {
         while (std::getchar() == EOF) ::Sleep(1);
       }},

      // It comes back late.
      {"slow", [](const Buffer&) { ::Sleep(200); }},

      // It goes on, in a process that is another one.
      {"print", [](const Buffer&) { std::puts("Mustermann"); }},
      {"flood",
       [](const Buffer&) { Write(::GetStdHandle(STD_OUTPUT_HANDLE), std::string(100'000, '.')); }},
      {"close-output", [](const Buffer&) { ::CloseHandle(::GetStdHandle(STD_OUTPUT_HANDLE)); }},
      {"ask-to-quit", [](const Buffer&) { ::PostQuitMessage(1); }},
      {"change-directory", [](const Buffer&) { ::SetCurrentDirectoryW(L"C:\\"); }},
      {"change-locale", [](const Buffer&) { std::setlocale(LC_ALL, "German"); }},
      {"clear-environment", [](const Buffer&) { ClearEnvironment(); }},
      {"hang-at-end", [](const Buffer&) { std::atexit([] { WaitForEver(); }); }},
      {"crash-at-end", [](const Buffer&) { std::atexit(&DereferenceNull); }},
  };
  return deeds;
}

void* SimulatorFunction(const char* name) {
  static const HMODULE library = ::LoadLibraryA(SIMULATOR_LIBRARY);
  return reinterpret_cast<void*>(::GetProcAddress(library, name));
}
