#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "app/bas_mkt_test.h"
#include "console/console_run.h"
#include "diagnosis/library_fault_text.h"
#include "main/command_line.h"
#include "main/installation.h"
#include "platform/machine_port_directory.h"
#include "platform/pending_call.h"
#include "platform/qt/ct_api_library.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/serial_port_directory.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "platform/standard_streams.h"
#include "platform/termination_signal.h"
#include "protocol/com_table.h"
#include "protocol/private_memory.h"
#include "simulator/scenario.h"
#include "text/status_texts.h"
#if defined(KARTOCHECK_WITH_WINDOW)
#include "main/start_window.h"
#endif

namespace kartocheck {
namespace {

QStringList Arguments(int argc, char** argv) {
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  return arguments;
}

// Ends the program at once; a link that is open stays as it is.
[[noreturn]] void TerminateNow(const LibraryFault& fault) {
  std::cout.flush();
  std::cerr << "KartoCheck: " << LibraryFaultText(fault).toStdString() << '\n';
  std::cerr.flush();
  std::_Exit(exit_status::UsageOrFatal);
}

// The outside world of a call: a library and the machine's ports, or a simulated practice.
class Outside {
 public:
  explicit Outside(const CommandLine& line) {
    if (line.simulate) {
      Simulate(*line.simulate);
    } else {
      UseMachine(line);
    }
  }

  [[nodiscard]] CtApi& Api() { return *api_; }
  [[nodiscard]] SerialPort& Serial() { return *serial_; }
  [[nodiscard]] const PortDirectory& Directory() const { return *directory_; }

  // The call that the library has not answered yet; simulated terminals answer at once.
  [[nodiscard]] PendingCall& Pending() { return pending_; }

  // The library in use; empty as long as none was loaded.
  [[nodiscard]] QString LibraryText() const { return libraryText_(); }

 private:
  void Simulate(const QString& scenario) {
    const auto file = ScenarioFile(QCoreApplication::applicationDirPath(), scenario);
    if (!file) throw std::runtime_error("Szenario nicht gefunden: " + scenario.toStdString());
    practice_ = ctapi::LoadScenario(file->toStdU16String());
    api_ = std::make_unique<CtApiSimulated>(practice_);
    serial_ = std::make_unique<SerialPortSimulated>(practice_);
    directory_ = std::make_unique<PortDirectorySimulated>(practice_);
    libraryText_ = [text = QString(u"Simulation (" + *file + u')')] { return text; };
  }

  void UseMachine(const CommandLine& line) {
    ctapi::ComTable overrides;
    for (auto entry = line.serialPorts.cbegin(); entry != line.serialPorts.cend(); ++entry) {
      overrides.emplace(entry.key(), entry.value().toStdString());
    }
    const std::vector<ctapi::ComDevice> devices = ctapi::FindComDevices();
    const ctapi::ComTable table = ctapi::MakeComTable(devices, overrides);
    // The library opens the same devices under the same numbers.
    qputenv(ctapi::ComTableVariable, QByteArray::fromStdString(ctapi::ComTableText(table)));
    const QString directory = QCoreApplication::applicationDirPath();
    auto library = std::make_unique<CtApiLibrary>(
        HelperProgram(directory),
        line.ctApi ? QStringList{*line.ctApi} : CtApiCandidates(directory, CtApiLibrary::FileName),
        pending_);
    CtApiLibrary& loaded = *library;
    libraryText_ = [&loaded] { return loaded.LoadedFile(); };
    api_ = std::move(library);
    serial_ = std::make_unique<QtSerialPort>(table);
    directory_ = std::make_unique<MachinePortDirectory>(
        std::make_unique<SerialPortDirectory>(devices, table),
        [&loaded](int pn) { return loaded.InfoOf(pn); });
  }

  ctapi::SimulatedPractice practice_;
  PendingCall pending_;
  std::unique_ptr<CtApi> api_;
  std::unique_ptr<SerialPort> serial_;
  std::unique_ptr<const PortDirectory> directory_;
  std::function<QString()> libraryText_;
};

// The directories in which the schemas are looked for.
QStringList SchemaDirectories(const CommandLine& line) {
  if (!line.schemaDirectory) return DataDirectories(QCoreApplication::applicationDirPath());
  if (!QFileInfo(*line.schemaDirectory).isDir()) {
    throw std::runtime_error("Ordner nicht gefunden: " + line.schemaDirectory->toStdString());
  }
  return {*line.schemaDirectory};
}

StatusLine StatusLineOn(StandardStream stream) {
  return IsTerminal(stream) ? StatusLine::Overwritten : StatusLine::Kept;
}

int RunConsoleFrontEnd(const CommandLine& line, Outside& outside) {
  QtEventLoop eventLoop;
  bool endRequested = false;
  const LineSource answers = [&]() -> std::optional<std::string> {
    // Whoever asks the program to end does not want to answer first.
    while (!endRequested && !WaitForInput()) eventLoop.Yield();
    std::string answer;
    if (endRequested || !std::getline(std::cin, answer)) return std::nullopt;
    // A terminal shows what is typed by itself.
    if (!IsTerminal(StandardStream::Input)) std::cout << answer << '\n';
    return answer;
  };
  ConsoleFrontEnd frontEnd =
      line.diagnose
          ? ConsoleFrontEnd(std::cout, StatusLineOn(StandardStream::Output), answers)
          : ConsoleFrontEnd(std::cerr, StatusLineOn(StandardStream::Error),
                            line.eraseRecords ? StoredRecords::Erase : StoredRecords::Keep);
  Bas_MKT_Test module({.api = outside.Api(),
                       .dialogs = frontEnd,
                       .display = frontEnd,
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
  module.LoadSchemas(SchemaDirectories(line));
  module.SetValidation(line.validate);
  const TerminationSignal signal([&] {
    endRequested = true;
    module.RequestExit();
  });
  if (line.diagnose) return RunConsoleDiagnosis(*line.diagnose, module, frontEnd, std::cout);
  return RunConsole({.json = line.json, .port = line.port}, module, frontEnd, std::cout);
}

int Run(const CommandLine& line) {
  Outside outside(line);
  if (line.console) return RunConsoleFrontEnd(line, outside);
#if defined(KARTOCHECK_WITH_WINDOW)
  return RunWindow({.api = outside.Api(),
                    .serial = outside.Serial(),
                    .directory = outside.Directory(),
                    .pending = outside.Pending(),
                    .terminate = TerminateNow,
                    .schemaDirectories = SchemaDirectories(line),
                    .library = [&outside] { return outside.LibraryText(); },
                    .simulation = line.simulate.has_value()});
#else
  std::cerr << "Diese Fassung hat kein Fenster; bitte mit --console aufrufen.\n";
  return exit_status::UsageOrFatal;
#endif
}

std::unique_ptr<QCoreApplication> MakeApplication([[maybe_unused]] bool window, int& argc,
                                                  char** argv) {
#if defined(KARTOCHECK_WITH_WINDOW)
  if (window) return MakeWindowApplication(argc, argv);
#endif
  return std::make_unique<QCoreApplication>(argc, argv);
}

int Main(int argc, char** argv) {
  QCoreApplication::setApplicationName(QStringLiteral("kartocheck"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KARTOCHECK_VERSION));

  const auto parsed = ParseCommandLine(Arguments(argc, argv));
  if (const auto* text = std::get_if<CommandLineText>(&parsed)) {
    (text->isError ? std::cerr : std::cout) << text->text.trimmed().toStdString() << '\n';
    return text->isError ? exit_status::UsageOrFatal : EXIT_SUCCESS;
  }
  const auto& line = std::get<CommandLine>(parsed);
  const auto application = MakeApplication(!line.console, argc, argv);
  try {
    return Run(line);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return exit_status::UsageOrFatal;
  }
}

}  // namespace
}  // namespace kartocheck

int main(int argc, char** argv) {
  ctapi::KeepMemoryPrivate();
  kartocheck::SecureStandardStreams();
  return kartocheck::Main(argc, argv);
}
