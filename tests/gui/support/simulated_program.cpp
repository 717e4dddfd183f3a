#include "gui/support/simulated_program.h"

#include <cstdlib>

#include "simulator/scenario.h"
#include "ui/main_window/test_report.h"

namespace kartocheck::test {

namespace {

constexpr int Noon = 12;

}  // namespace

QString ScenarioPath(const QString& name) {
  return QStringLiteral(KARTOCHECK_SCENARIOS "/") + name;
}

SimulatedProgram::SimulatedProgram(const QString& scenario, const Form_MKT_Test::Options& options,
                                   const PortDirectory* machine)
    : Screen(window),
      practice(ctapi::LoadScenario(ScenarioPath(scenario + u".json").toStdU16String())),
      window(options),
      recorder(window.Boxes(), window, [] { return QTime(Noon, 0); }),
      module({.api = library,
              .dialogs = recorder,
              .display = recorder,
              .eventLoop = eventLoop,
              .serial = serial,
              .directory = machine == nullptr ? directory : *machine,
              .terminate = [](const auto&) { std::abort(); }}),
      flow(module, recorder, recorder, view, window) {
  window.Attach(flow, view, module);
  window.OfferReport([this] { return MakeReport(); });
  window.show();
  Activate(window);
}

TestReport SimulatedProgram::MakeReport() const {
  return TestReportOf(QDateTime(QDate(2024, 3, 5), QTime(Noon, 0)),
                      {.version = QStringLiteral("0.1.0"),
                       .library = QStringLiteral("Simulation"),
                       .system = QStringLiteral("Testsystem 1")},
                      module, recorder);
}

QString SimulatedProgram::Report() const {
  return ReportText(MakeReport());
}

}  // namespace kartocheck::test
