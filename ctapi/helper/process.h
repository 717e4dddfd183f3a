#pragma once

#include <cstdint>

// What the helper asks of the operating system for itself.
namespace ctapi::helper {

// Ends with the program, whatever the library is doing then, and not before: requests to end are
// the program's.
void BelongToProgram();

// The number of this process: another one than before where a library has forked and both come
// back.
[[nodiscard]] std::int64_t ProcessNumber();

// Ends the process at once, without anything that a library has asked to be done at its end.
[[noreturn]] void EndAtOnce();

}  // namespace ctapi::helper
