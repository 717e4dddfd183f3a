#pragma once

#include <functional>

#include "main/command_line.h"
#include "platform/library_fault.h"

namespace kartocheck {

// What every program of ours does with a call: takes the command line apart and tells its text, or
// goes on with `run`, whose exit status it returns; what that throws is told, and is exit status 3.
[[nodiscard]] int RunProgram(int argc, char** argv,
                             const std::function<int(const CommandLine&)>& run);

// Ends the program at once; a link that is open stays as it is.
[[noreturn]] void TerminateNow(const LibraryFault& fault);

}  // namespace kartocheck
