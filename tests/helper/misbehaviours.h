#pragma once

#include <chrono>
#include <ostream>
#include <vector>

#include "platform/library_fault.h"

// What modules/misbehaving_library.cpp can do on this system, as its plan is written: the call, its
// number from 1 on, and the deed.
namespace kartocheck::test {

struct FaultRow {
  const char* plan;
  LibraryFaultKind kind;
  int number = 0;  // of the signal, of the crash, or the status that the process ended with

  friend std::ostream& operator<<(std::ostream& out, const FaultRow& row) {
    return out << row.plan;
  }
};

// Deeds for which there is no answer, and what is told instead.
[[nodiscard]] std::vector<FaultRow> FaultRows();
// Deeds of which the program feels nothing.
[[nodiscard]] std::vector<const char*> HarmlessDeeds();
// A patience within which the helper has started and loaded a library that is quick.
[[nodiscard]] std::chrono::milliseconds LongestStart();
// Deeds that do not come back.
[[nodiscard]] std::vector<const char*> HangingDeeds();

}  // namespace kartocheck::test
