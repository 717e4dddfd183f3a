#include "main/start_window.h"

#include <QApplication>

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

int RunWindow(CtApi& api, const Terminate& terminate, bool simulation) {
  QtEventLoop eventLoop;
  Form_MKT_Test window({.simulation = simulation, .settings = nullptr});
  Bas_MKT_Test module({.api = api,
                       .dialogs = window.Boxes(),
                       .display = window,
                       .eventLoop = eventLoop,
                       .terminate = terminate});
  TestFlow flow(module, window.Boxes(), window, window);
  window.Attach(flow);
  const TerminationSignal signal([&] { window.CloseForSystem(); });
  window.show();
  return QCoreApplication::exec();
}

}  // namespace kartocheck
