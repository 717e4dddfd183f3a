#include "main/start_window.h"

#include <QApplication>
#include <QSettings>
#include <QSysInfo>

#include <cstdlib>

#include "app/bas_mkt_test.h"
#include "main/failure_memory.h"
#include "main/no_display.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/system_names.h"
#include "platform/termination_signal.h"
#include "ui/form_first_user.h"
#include "ui/form_mkt_test.h"
#include "ui/german_texts.h"
#include "ui/main_window/run_recorder.h"
#include "ui/main_window/test_flow.h"
#include "ui/main_window/test_report.h"
#include "ui/readable_style.h"

namespace kartocheck {

namespace {

// Whether the user goes on to the main window. They do not where the system ends the program.
bool ShowUserInformation() {
  Form_FirstUser information(nullptr);
  bool isEnded = false;
  const TerminationSignal signal([&] {
    isEnded = true;
    information.close();
  });
  information.exec();
  return information.ContinueFlag() && !isEnded;
}

}  // namespace

std::unique_ptr<QCoreApplication> MakeWindowApplication(int& argc, char** argv) {
  auto application = [&] {
    const NoDisplayWatch watch;
    return std::make_unique<QApplication>(argc, argv);
  }();
  InstallReadableStyle();
  InstallGermanTexts(*application);
  // Desktops find the entry of their menu, and the icon, by this name.
  QGuiApplication::setDesktopFileName(QStringLiteral("kartocheck"));
  return application;
}

std::unique_ptr<QCoreApplication> MakeFontApplication(int& argc, char** argv) {
  const QString platform = PlatformWithoutDisplay();
  if (!platform.isEmpty()) qputenv("QT_QPA_PLATFORM", platform.toLatin1());
  return std::make_unique<QGuiApplication>(argc, argv);
}

int RunWindow(const WindowSetup& setup) {
  if (!ShowUserInformation()) return EXIT_SUCCESS;
  QtEventLoop eventLoop;
  QSettings settings(QStringLiteral("KartoCheck"), QStringLiteral("KartoCheck"));
  FailureMemory failures(settings);
  const auto facts = [&] {
    return ProgramFacts{.version = QCoreApplication::applicationVersion(),
                        .library = setup.library(),
                        .system = QSysInfo::prettyProductName(),
                        .lastFailure = failures.Text()};
  };
  Form_MKT_Test window({.simulation = setup.simulation, .settings = &settings, .facts = facts});
  RunRecorder recorder(window.Boxes(), window, [] { return QTime::currentTime(); });
  Bas_MKT_Test module({.api = setup.api,
                       .dialogs = recorder,
                       .display = recorder,
                       .eventLoop = eventLoop,
                       .serial = setup.serial,
                       .directory = setup.directory,
                       .terminate =
                           [&](const LibraryFault& fault) {
                             failures.Keep(QDateTime::currentDateTime(), fault);
                             setup.terminate(fault);
                           },
                       .onExitRequest = [&] { setup.pending.GiveUpWhateverIsLate(); }});
  module.LoadSchemas(setup.schemaDirectories);
  ViewState view;
  TestFlow flow(module, recorder, recorder, view, window);
  flow.Watch(setup.pending);
  window.Attach(flow, view, module);
  window.OfferReport(
      [&] { return TestReportOf(QDateTime::currentDateTime(), facts(), module, recorder); });
  const TerminationSignal signal([&] { window.CloseForSystem(); });
  window.show();
  return QCoreApplication::exec();
}

}  // namespace kartocheck
