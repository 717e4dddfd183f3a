#include "gui/flow_logs/logged_program.h"

#include <cstdlib>
#include <ostream>

#include "console/console_run.h"
#include "gui/support/screen.h"
#include "simulator/scenario.h"
#include "ui/main_window/test_report.h"

namespace kartocheck::test {

namespace {

constexpr int Noon = 12;

Terminate TerminateOf(FlowLog& log) {
  return [&log](const LibraryFault& /*fault*/) {
    log.Line(QStringLiteral("terminated"));
    log.Flush();
    std::abort();
  };
}

QStringList SchemaDirectories() {
  return {QStringLiteral(KARTOCHECK_SCHEMAS)};
}

ProgramFacts Facts() {
  return {.version = QStringLiteral("0.1.0"),
          .library = QStringLiteral("Simulation"),
          .system = QStringLiteral("Testsystem 1")};
}

}  // namespace

LoggedProgram::LoggedProgram(const QString& scenarioFile, FlowLog& log)
    : Screen(window),
      practice(ctapi::LoadScenario(scenarioFile.toStdU16String())),
      loggedLibrary(simulated, log),
      serial(simulatedSerial, log),
      eventLoop(log),
      window({.simulation = true, .facts = Facts}),
      dialogs(window.Boxes(), log),
      display(window, log),
      recorder(dialogs, display, [] { return QTime(Noon, 0); }),
      module({.api = library,
              .dialogs = recorder,
              .display = recorder,
              .eventLoop = eventLoop,
              .serial = serial,
              .directory = directory,
              .terminate = TerminateOf(log)}),
      flow(module, recorder, recorder, view, window) {
  module.LoadSchemas(SchemaDirectories());
  window.Attach(flow, view, module);
  window.OfferReport([this] { return MakeReport(); });
  window.show();
  Activate(window);
}

TestReport LoggedProgram::MakeReport() const {
  return TestReportOf(QDateTime(QDate(2024, 3, 5), QTime(Noon, 0)), Facts(), module, recorder);
}

QString LoggedProgram::Report() const {
  return ReportText(MakeReport());
}

void RunConsoleCall(const QString& scenarioFile, const ConsoleCall& call, FlowLog& log) {
  ctapi::SimulatedPractice practice = ctapi::LoadScenario(scenarioFile.toStdU16String());
  CtApiSimulated simulated(practice);
  LoggedLibrary library(simulated, log);
  SerialPortSimulated simulatedSerial(practice);
  LoggedSerialPort serial(simulatedSerial, log);
  const PortDirectorySimulated directory(practice);
  LoggedEventLoop eventLoop(log);
  LoggedStream outBuffer(QStringLiteral("stdout"), log);
  LoggedStream errorBuffer(QStringLiteral("stderr"), log);
  std::ostream out(&outBuffer);
  std::ostream errors(&errorBuffer);

  std::deque<std::string> typed = call.typed;
  const LineSource answers = [&]() -> std::optional<std::string> {
    if (typed.empty()) return std::nullopt;
    const std::string answer = typed.front();
    typed.pop_front();
    out << answer << '\n';
    return answer;
  };
  ConsoleFrontEnd frontEnd =
      call.diagnose
          ? ConsoleFrontEnd(out, MessageOptions(), answers)
          : ConsoleFrontEnd(errors, MessageOptions(),
                            call.eraseRecords ? StoredRecords::Erase : StoredRecords::Keep);
  Bas_MKT_Test module({.api = library,
                       .dialogs = frontEnd,
                       .display = frontEnd,
                       .eventLoop = eventLoop,
                       .serial = serial,
                       .directory = directory,
                       .terminate = TerminateOf(log)});
  module.LoadSchemas(SchemaDirectories());
  module.SetValidation(call.validate);
  const int status =
      call.diagnose ? RunConsoleDiagnosis(*call.diagnose, module, frontEnd, out)
                    : RunConsole({.json = call.json, .port = call.port}, module, frontEnd, out);
  out.flush();
  errors.flush();
  log.Line(
      QStringLiteral("exit status %1, %2 answers not asked for").arg(status).arg(typed.size()));
}

}  // namespace kartocheck::test
