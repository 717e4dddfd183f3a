#pragma once

#include <stdexcept>
#include <string>

namespace kartocheck {

// Why the CT-API library cannot be used any more.
enum class LibraryFaultKind {
  // The program's helper, the process that holds the library, does not start (Detail: its file).
  HelperMissing,

  // The library cannot be loaded (Detail: the file that the trouble is with).
  FileMissing,
  DependencyMissing,
  NotALibrary,
  WrongWordSize,
  NotLoadable,  // Detail: the system's own words

  EntryPointMissing,  // Detail: its name

  // What the library did in a call.
  Overrun,          // wrote outside its response buffer
  Threw,            // let a C++ exception out
  EndedBySignal,    // ended its process (Number: the signal; on Windows the exception's code)
  EndedWithStatus,  // the same by itself (Number: the exit status)
  Garbled,          // disturbed the way to the program
  ResponseTooLong,  // told of a response that its buffer cannot hold
  ImproperCommand,  // the program's own fault: a command that cannot be sent
};

struct LibraryFault {
  LibraryFaultKind Kind = LibraryFaultKind::NotLoadable;
  std::string Detail{};  // UTF-8
  int Number = 0;

  friend bool operator==(const LibraryFault&, const LibraryFault&) = default;
};

// Thrown where a call has no code to return.
struct LibraryFailure : std::runtime_error {
  explicit LibraryFailure(LibraryFault fault)
      : std::runtime_error("CT-API: " + fault.Detail), Fault(std::move(fault)) {}
  LibraryFault Fault;
};

// The library, or what it needs, cannot be loaded.
struct LibraryNotFound : LibraryFailure {
  using LibraryFailure::LibraryFailure;
};

// It can, but not be used.
struct LibraryUnusable : LibraryFailure {
  using LibraryFailure::LibraryFailure;
};

}  // namespace kartocheck
