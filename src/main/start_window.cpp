#include "main/start_window.h"

#include <QApplication>
#include <QSettings>

#include "app/bas_mkt_test.h"
#include "platform/qt_event_loop.h"
#include "platform/termination_signal.h"
#include "ui/form_mkt_test.h"
#include "ui/german_texts.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck {

std::unique_ptr<QCoreApplication> MakeWindowApplication(int& argc, char** argv) {
  auto application = std::make_unique<QApplication>(argc, argv);
  InstallGermanTexts(*application);
  return application;
}

int RunWindow(const WindowSetup& setup) {
  QtEventLoop eventLoop;
  QSettings settings(QStringLiteral("KartoCheck"), QStringLiteral("KartoCheck"));
  Form_MKT_Test window({.simulation = setup.simulation, .settings = &settings});
  Bas_MKT_Test module({.api = setup.api,
                       .dialogs = window.Boxes(),
                       .display = window,
                       .eventLoop = eventLoop,
                       .serial = setup.serial,
                       .directory = setup.directory,
                       .terminate = setup.terminate});
  LoadSchemas(module.Validation, setup.schemaDirectories);
  TestFlow flow(module, window.Boxes(), window, window);
  window.Attach(flow);
  const TerminationSignal signal([&] { window.CloseForSystem(); });
  window.show();
  return QCoreApplication::exec();
}

}  // namespace kartocheck
