#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "app/bas_mkt_test.h"
#include "console/console_run.h"
#include "main/command_line.h"
#include "main/installation.h"
#include "platform/ct_api_library.h"
#include "platform/ct_api_simulated.h"
#include "platform/qt_event_loop.h"
#include "platform/termination_signal.h"
#include "simulator/scenario.h"
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
[[noreturn]] void TerminateNow() {
  std::cout.flush();
  std::cerr.flush();
  std::_Exit(exit_status::UsageOrFatal);
}

// The CT-API of the call: a library, or simulated terminals.
class ChosenCtApi {
 public:
  explicit ChosenCtApi(const CommandLine& line) {
    const QString directory = QCoreApplication::applicationDirPath();
    if (line.simulate) {
      const auto file = ScenarioFile(directory, *line.simulate);
      if (!file)
        throw std::runtime_error("Szenario nicht gefunden: " + line.simulate->toStdString());
      practice_ = ctapi::LoadScenario(file->toStdU16String());
      api_ = std::make_unique<CtApiSimulated>(practice_);
    } else {
      api_ = std::make_unique<CtApiLibrary>(
          line.ctApi ? QStringList{*line.ctApi}
                     : CtApiCandidates(directory, CtApiLibrary::FileName));
    }
  }

  [[nodiscard]] CtApi& Get() { return *api_; }

 private:
  ctapi::SimulatedPractice practice_;
  std::unique_ptr<CtApi> api_;
};

int RunConsoleFrontEnd(const CommandLine& line, CtApi& api) {
  QtEventLoop eventLoop;
  ConsoleFrontEnd frontEnd(std::cerr,
                           line.eraseRecords ? StoredRecords::Erase : StoredRecords::Keep);
  Bas_MKT_Test module({.api = api,
                       .dialogs = frontEnd,
                       .display = frontEnd,
                       .eventLoop = eventLoop,
                       .terminate = TerminateNow});
  const TerminationSignal signal([&] { module.ExitRequested = true; });
  return RunConsole({.json = line.json, .port = line.port}, module, frontEnd, std::cout);
}

int Run(const CommandLine& line) {
  ChosenCtApi api(line);
  if (line.console) return RunConsoleFrontEnd(line, api.Get());
#if defined(KARTOCHECK_WITH_WINDOW)
  return RunWindow(api.Get(), TerminateNow, line.simulate.has_value());
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
  return kartocheck::Main(argc, argv);
}
