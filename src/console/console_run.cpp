#include "console/console_run.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "console/json_report.h"
#include "console/text_report.h"
#include "ui/main_window/port_flow.h"

namespace kartocheck {

namespace {

PortReport ReportOf(Port port, const Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd) {
  const int slot = port.Slot();
  return {.port = port,
          .entry = module.PortOf(slot),
          .terminal = module.TerminalOf(slot),
          .insured = module.InsuredOf(slot),
          .egk = module.EgkOf(slot),
          .identification = module.IdentificationOf(slot),
          .hint = module.HintFor(port),
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
        ports_(module, frontEnd, view_) {}

  void LookAt(Port port) {
    if (module_.IsExitRequested()) return;
    ports_.Scan(port);
    reports_.push_back(ReportOf(port, module_, frontEnd_));
    if (options_.json) return;
    frontEnd_.EndStatusLine();
    WritePort(out_, reports_.back());
  }

  void LookAtAll() {
    constexpr ctapi::PortRange Tested = ctapi::TestedComPorts;
    for (int pn = Tested.First; pn <= Tested.Last; ++pn) LookAt(Port(pn));
    if (module_.IsExitRequested()) return;
    ports_.SweepFurtherPorts();
    const std::vector<Port> furtherPorts = module_.FurtherPorts();
    for (const Port port : furtherPorts) LookAt(port);
  }

  [[nodiscard]] RunReport Report() const {
    return {.ports = reports_, .hints = view_.hintsWithoutReader.Value()};
  }

 private:
  const ConsoleOptions& options_;
  Bas_MKT_Test& module_;
  ConsoleFrontEnd& frontEnd_;
  std::ostream& out_;
  ViewState view_;
  PortFlow ports_;
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
  const RunReport run = scan.Report();
  if (options.json) {
    out << JsonReport(run).toStdString();
  } else {
    WritePortTable(out, run);
  }
  out.flush();
  return ExitStatusOf(run.ports);
}

int RunConsoleDiagnosis(Port port, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
                        std::ostream& out) {
  ViewState view;
  view.diagnosedPort.Watch([&](const QString& name) { frontEnd.ShowStatusText(name); });
  PortFlow flow(module, frontEnd, view);
  flow.Choose(port);
  flow.Diagnose(port);
  const std::vector<PortReport> reports{ReportOf(port, module, frontEnd)};
  frontEnd.EndStatusLine();
  out << '\n';
  WritePort(out, reports.front());
  return ExitStatusOf(reports);
}

}  // namespace kartocheck
