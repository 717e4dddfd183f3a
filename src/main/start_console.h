#pragma once

#include "main/command_line.h"
#include "main/outside.h"
#include "ui/main_window/test_report.h"

namespace kartocheck {

// Runs the console over the outside world of the call. reportFormat: of the test report, where the
// line asks for one. Returns the exit status.
[[nodiscard]] int RunConsoleFrontEnd(const CommandLine& line, Outside& outside,
                                     const ReportFormat& reportFormat);

}  // namespace kartocheck
