#include "console/console_run.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "console/json_report.h"
#include "console/text_report.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck {

namespace {

constexpr int ComPortCount = 4;

PortReport ReportOf(int pn, const Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd) {
  const int slot = SlotOf(pn);
  return {.pn = pn,
          .port = module.Ports[slot],
          .terminal = module.Terminals[slot],
          .insured = module.Insured[slot],
          .egk = module.Egk[slot],
          .identification = module.IdentificationOf(slot),
          .hint = module.HintFor(pn),
          .messages = frontEnd.TakeMessages()};
}

// One run over ports; each is reported when it is done.
class ConsoleScan {
 public:
  ConsoleScan(const ConsoleOptions& options, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
              std::ostream& out)
      : options_(options),
        module_(module),
        frontEnd_(frontEnd),
        out_(out),
        flow_(module, frontEnd, frontEnd, frontEnd) {}

  void LookAt(int pn) {
    if (module_.ExitRequested) return;
    flow_.ScanPort(pn);
    reports_.push_back(ReportOf(pn, module_, frontEnd_));
    if (options_.json) return;
    frontEnd_.EndStatusLine();
    WritePort(out_, reports_.back());
  }

  void LookAtAll() {
    for (int pn = 1; pn <= ComPortCount; ++pn) LookAt(pn);
    if (module_.ExitRequested) return;
    flow_.SweepFurtherPorts();
    const std::vector<int> furtherPorts = module_.FurtherPorts;
    for (const int pn : furtherPorts) LookAt(pn);
  }

  [[nodiscard]] const std::vector<PortReport>& Reports() const { return reports_; }

 private:
  const ConsoleOptions& options_;
  Bas_MKT_Test& module_;
  ConsoleFrontEnd& frontEnd_;
  std::ostream& out_;
  TestFlow flow_;
  std::vector<PortReport> reports_;
};

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
  ConsoleScan scan(options, module, frontEnd, out);
  if (options.port) {
    scan.LookAt(*options.port);
  } else {
    scan.LookAtAll();
  }
  frontEnd.EndStatusLine();
  const RunReport run{.ports = scan.Reports(), .hints = frontEnd.HintsWithoutReader()};
  if (options.json) {
    out << JsonReport(run).toStdString();
  } else {
    WritePortTable(out, run);
  }
  out.flush();
  return ExitStatusOf(scan.Reports());
}

int RunConsoleDiagnosis(int pn, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
                        std::ostream& out) {
  TestFlow flow(module, frontEnd, frontEnd, frontEnd);
  if (pn <= ComPortCount) {
    flow.ChoosePort(pn - 1);
  } else {
    module.FurtherPorts = {pn};
    flow.ChooseFurtherPort(0);
  }
  flow.Button(static_cast<int>(Action::Diagnosis));
  const std::vector<PortReport> reports{ReportOf(pn, module, frontEnd)};
  frontEnd.EndStatusLine();
  out << '\n';
  WritePort(out, reports.front());
  return ExitStatusOf(reports);
}

}  // namespace kartocheck
