#include "helper/misbehaviours.h"

#include <csignal>

namespace kartocheck::test {

namespace {

constexpr auto BySignal = LibraryFaultKind::EndedBySignal;
constexpr auto WithStatus = LibraryFaultKind::EndedWithStatus;
constexpr auto Overrun = LibraryFaultKind::Overrun;

}  // namespace

std::vector<FaultRow> FaultRows() {
  return {
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
  };
}

std::vector<const char*> HarmlessDeeds() {
  return {"data 1 print",          "data 1 flood",
          "data 1 close-output",   "data 1 fork",
          "init 1 fork",           "data 1 block-signals",
          "data 1 ignore-signals", "data 1 change-directory",
          "data 1 change-locale",  "data 1 clear-environment",
          "data 1 change-mask",    "data 1 no-more-descriptors",
          "data 1 hang-at-end",    "data 1 crash-at-end"};
}

std::chrono::milliseconds LongestStart() {
  return std::chrono::milliseconds(60);
}

std::vector<const char*> HangingDeeds() {
  return {"load 1 wait", "init 1 sleep", "init 1 wait", "baud 1 wait", "data 1 sleep",
          "data 1 wait", "data 1 spin",  "data 1 stop", "data 1 deaf", "data 1 read-input-for-ever",
          "close 1 wait"};
}

}  // namespace kartocheck::test
