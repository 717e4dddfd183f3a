#include "console/console_run.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "console/json_report.h"
#include "console/text_report.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck {

namespace {

std::vector<int> PortsToLookAt(const ConsoleOptions& options) {
  if (options.port) return {*options.port};
  return {1, 2, 3, 4};
}

PortReport LookAt(int pn, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd, TestFlow& flow) {
  const int slot = SlotOf(pn);
  flow.ScanPort(pn);
  return {.pn = pn,
          .port = module.Ports[slot],
          .terminal = module.Terminals[slot],
          .insured = module.Insured[slot],
          .messages = frontEnd.TakeMessages()};
}

int ExitStatusOf(const std::vector<PortReport>& reports) {
  const auto any = [&](auto member) {
    return std::any_of(reports.begin(), reports.end(),
                       [&](const PortReport& report) { return report.terminal.*member; });
  };
  if (any(&TerminalInfo::DataRead)) return exit_status::DataRead;
  return any(&TerminalInfo::Answered) ? exit_status::NoData : exit_status::NoTerminal;
}

}  // namespace

int RunConsole(const ConsoleOptions& options, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
               std::ostream& out) {
  TestFlow flow(module, frontEnd, frontEnd, frontEnd);
  std::vector<PortReport> reports;
  for (const int pn : PortsToLookAt(options)) {
    if (module.ExitRequested) break;
    reports.push_back(LookAt(pn, module, frontEnd, flow));
    if (!options.json) WritePort(out, reports.back());
  }
  if (options.json) {
    out << JsonReport(reports).toStdString();
  } else {
    WritePortTable(out, reports);
  }
  out.flush();
  return ExitStatusOf(reports);
}

}  // namespace kartocheck
