#pragma once

#include <QString>

#include "app/bas_mkt_test.h"
#include "gui/support/hooked_library.h"
#include "gui/support/quick_event_loop.h"
#include "gui/support/screen.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "simulator/simulated_practice.h"
#include "support/open_module.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/run_recorder.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The program over a bundled practice of simulated terminals, put together as at its start.
class SimulatedProgram : public Screen {
 public:
  // scenario: name of a bundled one. machine: who knows of the ports instead of the practice.
  explicit SimulatedProgram(const QString& scenario, const Form_MKT_Test::Options& options = {},
                            const PortDirectory* machine = nullptr);

  // What the test report says now.
  [[nodiscard]] TestReport MakeReport() const;
  [[nodiscard]] QString Report() const;

  ctapi::SimulatedPractice practice;
  CtApiSimulated simulated{practice};
  HookedLibrary library{simulated};
  SerialPortSimulated serial{practice};
  PortDirectorySimulated directory{practice};
  QuickEventLoop eventLoop;
  Form_MKT_Test window;
  RunRecorder recorder;
  OpenModule module;
  ViewState view;
  TestFlow flow;
};

// The file of a bundled scenario, or of anything else beside them.
[[nodiscard]] QString ScenarioPath(const QString& name);

}  // namespace kartocheck::test
