#pragma once

#include <functional>
#include <iosfwd>
#include <optional>

#include "app/bas_mkt_test.h"
#include "console/console_front_end.h"

namespace kartocheck {

// Exit status of a run.
namespace exit_status {
inline constexpr int DataRead = 0;
inline constexpr int NoTerminal = 1;
inline constexpr int NoData = 2;  // a terminal, but no data could be read
inline constexpr int UsageOrFatal = 3;
inline constexpr int NotWritten = 4;     // the report could not be written
inline constexpr int Interrupted = 130;  // the program was asked to end, as shells tell SIGINT
}  // namespace exit_status

struct ConsoleOptions {
  bool json = false;
  std::optional<Port> port{};  // only this one
  // Called with the whole run when it was handed over; may throw NotWritten.
  std::function<void(const RunReport& run)> atEnd{};
};

// Checks the ports, identifies the terminals, reads what can be read and reports on `out`: the port
// of the options, or COM 1 to 4 and every further port that a sweep finds. Each port is handed over
// when it is done; what cannot be handed over ends the run before the next read. Returns the exit
// status.
[[nodiscard]] int RunConsole(const ConsoleOptions& options, Bas_MKT_Test& module,
                             ConsoleFrontEnd& frontEnd, std::ostream& out);

// Runs the guided questions for the port and reports on it. Returns the exit status.
[[nodiscard]] int RunConsoleDiagnosis(Port port, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
                                      std::ostream& out);

}  // namespace kartocheck
