#include "main/start_console.h"

#include <QCoreApplication>
#include <QSaveFile>
#include <QSysInfo>

#include <iostream>
#include <optional>
#include <string>
#include <utility>

#include "app/bas_mkt_test.h"
#include "console/console_run.h"
#include "console/report_writer.h"
#include "main/program.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/standard_streams.h"
#include "platform/termination_signal.h"
#include "text/status_texts.h"

namespace kartocheck {

namespace {

MessageOptions MessageOptionsOn(StandardStream stream, const CommandLine& line) {
  const auto statusLine = [&] {
    if (line.quiet) return StatusLine::LeftOut;
    if (IsTerminal(stream)) return StatusLine::Overwritten;
    return line.verbose ? StatusLine::Kept : StatusLine::LeftOut;
  };
  return {.statusLine = statusLine(),
          .columns = [stream] { return ColumnsOf(stream); },
          .areBoxesShown = !line.quiet};
}

void AddPorts(const RunReport& run, TestReport& report) {
  for (const PortReport& port : run.ports) {
    report.ports.push_back(
        ReportedPortOf(port.port, port.entry, port.terminal, port.identification, port.hint));
    if (!port.port.IsTested()) report.furtherPorts.append(port.port.Line());
  }
  report.hints = run.hints;
}

// What a person types, until the program is asked to end.
LineSource AnswersUntil(const bool& isEndRequested, EventLoop& eventLoop) {
  return [&]() -> std::optional<std::string> {
    // Whoever asks the program to end does not want to answer first.
    while (!isEndRequested && !WaitForInput()) eventLoop.Yield();
    std::string answer;
    if (isEndRequested || !std::getline(std::cin, answer)) return std::nullopt;
    // A terminal shows what is typed by itself.
    if (!IsTerminal(StandardStream::Input)) std::cout << answer << '\n';
    return answer;
  };
}

ConsoleFrontEnd FrontEndOf(const CommandLine& line, LineSource answers) {
  if (line.diagnose) {
    return {std::cout, MessageOptionsOn(StandardStream::Output, line), std::move(answers)};
  }
  return {std::cerr, MessageOptionsOn(StandardStream::Error, line),
          line.eraseRecords ? StoredRecords::Erase : StoredRecords::Keep};
}

}  // namespace

int RunConsoleFrontEnd(const CommandLine& line, Outside& outside,
                       const ReportFormat& reportFormat) {
  // What cannot be written is not read: a read may erase a record.
  QSaveFile reportFile(line.report.value_or(QString()));
  reportFile.setDirectWriteFallback(true);
  if (line.report && !reportFile.open(QIODevice::WriteOnly)) {
    std::cerr << "KartoCheck: Der Prüfbericht kann nicht geschrieben werden: "
              << reportFile.errorString().toStdString() << '\n';
    return exit_status::NotWritten;
  }
  QtEventLoop eventLoop;
  bool endRequested = false;
  ConsoleFrontEnd frontEnd = FrontEndOf(line, AnswersUntil(endRequested, eventLoop));
  RunRecorder recorder(frontEnd, frontEnd, [] { return QTime::currentTime(); });
  Bas_MKT_Test module({.api = outside.Api(),
                       .dialogs = recorder,
                       .display = recorder,
                       .eventLoop = eventLoop,
                       .serial = outside.Serial(),
                       .directory = outside.Directory(),
                       .terminate =
                           [&](const LibraryFault& fault) {
                             frontEnd.CompleteAfterFatal();
                             TerminateNow(fault);
                           },
                       .onExitRequest = [&] { outside.Pending().GiveUpWhateverIsLate(); }});
  outside.Pending().Late().Watch([&](bool isLate) {
    if (isLate) frontEnd.ShowStatusText(status_text::NotAnsweredYet.toString());
  });
  module.LoadSchemas(outside.SchemaDirectories());
  module.SetValidation(line.validate);
  const TerminationSignal signal([&] {
    endRequested = true;
    module.RequestExit();
  });
  if (line.diagnose) return RunConsoleDiagnosis(*line.diagnose, module, frontEnd, std::cout);
  const auto saveReport = [&](const RunReport& run) {
    TestReport report = EmptyTestReport(QDateTime::currentDateTime(),
                                        {.version = QCoreApplication::applicationVersion(),
                                         .library = outside.LibraryText(),
                                         .system = QSysInfo::prettyProductName()},
                                        module.Validation(), recorder);
    AddPorts(run, report);
    if (!SaveReport(report, reportFormat, reportFile)) throw NotWritten();
  };
  ConsoleOptions options{.json = line.json, .port = line.port};
  if (line.report) options.atEnd = saveReport;
  return RunConsole(options, module, frontEnd, std::cout);
}

}  // namespace kartocheck
