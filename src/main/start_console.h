#pragma once

#include "main/command_line.h"
#include "main/outside.h"

namespace kartocheck {

// Runs the console over the outside world of the call. Returns the exit status.
[[nodiscard]] int RunConsoleFrontEnd(const CommandLine& line, Outside& outside);

}  // namespace kartocheck
