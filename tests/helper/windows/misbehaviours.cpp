#include "helper/misbehaviours.h"

#include <windows.h>

namespace kartocheck::test {

namespace {

constexpr auto BySignal = LibraryFaultKind::EndedBySignal;
constexpr auto WithStatus = LibraryFaultKind::EndedWithStatus;
constexpr auto Overrun = LibraryFaultKind::Overrun;

// Numbers of crashes are those of the exceptions that ended the process.
constexpr int NoMemory = static_cast<int>(STATUS_ACCESS_VIOLATION);
constexpr int Division = static_cast<int>(STATUS_INTEGER_DIVIDE_BY_ZERO);
constexpr int Illegal = static_cast<int>(STATUS_ILLEGAL_INSTRUCTION);
constexpr int StackEnd = static_cast<int>(STATUS_STACK_OVERFLOW);
constexpr int FastFail = static_cast<int>(0xC0000409);
constexpr int CppException = static_cast<int>(0xE06D7363);

}  // namespace

// A crash while a library is loaded is none: the system takes it, and tells that the library cannot
// be loaded. A library has a C++ library of its own: an exception that nobody in it takes ends the
// process, and does not come to whoever called it.
std::vector<FaultRow> FaultRows() {
  return {
      {"load 1 exit-3", WithStatus, 3},
      {"load 1 throw", BySignal, FastFail},
      {"init 1 crash", BySignal, NoMemory},
      {"baud 1 crash", BySignal, NoMemory},
      {"data 1 crash", BySignal, NoMemory},
      {"close 1 crash", BySignal, NoMemory},
      {"data 1 crash-without-filter", BySignal, NoMemory},
      {"init 1 exit", WithStatus, 0},
      {"baud 1 exit", WithStatus, 0},
      {"close 1 exit", WithStatus, 0},
      {"data 1 abort", BySignal, FastFail},
      {"data 1 divide", BySignal, Division},
      {"data 1 illegal", BySignal, Illegal},
      {"data 1 overflow", BySignal, StackEnd},
      {"data 1 exit", WithStatus, 0},
      {"data 1 exit-3", WithStatus, 3},
      {"data 1 underscore-exit", WithStatus, 5},
      {"data 1 terminate", WithStatus, 7},
      {"data 1 exit-in-thread", WithStatus, 6},
      {"data 1 crash-in-thread", BySignal, NoMemory},
      {"data 1 throw-in-thread", BySignal, FastFail},
      {"data 1 close-pipes", WithStatus, 0},
      {"init 1 throw", BySignal, FastFail},
      {"data 1 throw", BySignal, FastFail},
      {"data 1 throw-otherwise", BySignal, CppException},
      {"data 1 write-behind", Overrun},
      {"data 1 write-far-behind", Overrun},
      {"data 1 write-64k", Overrun},
      {"data 1 write-before", Overrun},
      {"data 1 write-far-before", Overrun},
  };
}

std::vector<const char*> HarmlessDeeds() {
  return {"data 1 print",         "data 1 flood",
          "data 1 close-output",  "data 1 ask-to-quit",
          "init 1 ask-to-quit",   "data 1 change-directory",
          "data 1 change-locale", "data 1 clear-environment",
          "data 1 hang-at-end",   "data 1 crash-at-end"};
}

// Windows takes longer to start a process.
std::chrono::milliseconds LongestStart() {
  return std::chrono::milliseconds(800);
}

std::vector<const char*> HangingDeeds() {
  return {"load 1 wait",           "init 1 sleep",
          "init 1 wait",           "baud 1 wait",
          "data 1 sleep",          "data 1 wait",
          "data 1 spin",           "data 1 stop",
          "data 1 serve-messages", "data 1 read-input-for-ever",
          "close 1 wait"};
}

}  // namespace kartocheck::test
