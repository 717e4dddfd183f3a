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

int ExitStatusOf(const std::vector<PortReport>& reports) {
  const auto any = [&](auto member) {
    return std::any_of(reports.begin(), reports.end(),
                       [&](const PortReport& report) { return report.terminal.*member; });
  };
  if (any(&TerminalInfo::DataRead)) return exit_status::DataRead;
  return any(&TerminalInfo::Answered) ? exit_status::NoData : exit_status::NoTerminal;
}

// One run over ports; each is reported when it is done.
class ConsoleScan {
 public:
  ConsoleScan(const ConsoleOptions& options, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
              ReportWriter& writer)
      : options_(options),
        module_(module),
        frontEnd_(frontEnd),
        writer_(writer),
        ports_(module, frontEnd, view_) {}

  [[nodiscard]] int Run() {
    writer_.Begin();
    if (options_.port) {
      LookAt(*options_.port);
    } else {
      LookAtAll();
    }
    run_.isComplete = !module_.IsExitRequested();
    End();
    return run_.isComplete ? ExitStatusOf(run_.ports) : exit_status::Interrupted;
  }

  // After a fatal message: what was read on the port that the run is at, and the end.
  void Complete() {
    try {
      if (current_) Add(*current_);
      End();
    } catch (const NotWritten&) {
      frontEnd_.TellNotWritten();
    }
  }

 private:
  void LookAt(Port port) {
    if (module_.IsExitRequested()) return;
    current_ = port;
    ports_.Scan(port);
    current_.reset();
    Add(port);
  }

  void LookAtAll() {
    constexpr ctapi::PortRange Tested = ctapi::TestedComPorts;
    for (int pn = Tested.First; pn <= Tested.Last; ++pn) LookAt(Port(pn));
    if (module_.IsExitRequested()) return;
    ports_.SweepFurtherPorts();
    const std::vector<Port> furtherPorts = module_.FurtherPorts();
    for (const Port port : furtherPorts) LookAt(port);
  }

  void Add(Port port) {
    frontEnd_.EndStatusLine();
    run_.ports.push_back(ReportOf(port, module_, frontEnd_));
    writer_.Add(run_.ports.back());
  }

  void End() {
    frontEnd_.EndStatusLine();
    run_.hints = view_.hintsWithoutReader.Value();
    writer_.End(run_);
    if (options_.atEnd) options_.atEnd(run_);
  }

  const ConsoleOptions& options_;
  Bas_MKT_Test& module_;
  ConsoleFrontEnd& frontEnd_;
  ReportWriter& writer_;
  ViewState view_;
  PortFlow ports_;
  RunReport run_;
  std::optional<Port> current_;
};

}  // namespace

int RunConsole(const ConsoleOptions& options, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
               std::ostream& out) {
  JsonReport json(out);
  TextReport text(out);
  ReportWriter& writer = options.json ? static_cast<ReportWriter&>(json) : text;
  ConsoleScan scan(options, module, frontEnd, writer);
  frontEnd.WhenFatal([&scan] { scan.Complete(); });
  try {
    return scan.Run();
  } catch (const NotWritten&) {
    frontEnd.TellNotWritten();
    return exit_status::NotWritten;
  }
}

int RunConsoleDiagnosis(Port port, Bas_MKT_Test& module, ConsoleFrontEnd& frontEnd,
                        std::ostream& out) {
  ViewState view;
  view.diagnosedPort.Watch([&](const QString& name) { frontEnd.ShowStatusText(name); });
  PortFlow flow(module, frontEnd, view);
  const auto report = [&] {
    std::vector<PortReport> reports{ReportOf(port, module, frontEnd)};
    frontEnd.EndStatusLine();
    out << '\n';
    WritePort(out, reports.front());
    out.flush();
    return reports;
  };
  frontEnd.WhenFatal([&] { (void)report(); });
  flow.Choose(port);
  flow.Diagnose(port);
  const std::vector<PortReport> reports = report();
  if (!out) return exit_status::NotWritten;
  return module.IsExitRequested() ? exit_status::Interrupted : ExitStatusOf(reports);
}

}  // namespace kartocheck
