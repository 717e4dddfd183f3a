#pragma once

#include <QString>

#include <deque>
#include <optional>
#include <string>

#include "app/bas_mkt_test.h"
#include "gui/flow_logs/flow_log.h"
#include "gui/flow_logs/logged_surroundings.h"
#include "gui/support/hooked_library.h"
#include "gui/support/screen.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "simulator/simulated_practice.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/run_recorder.h"
#include "ui/main_window/test_flow.h"

// The program over a scenario, put together as at its start, with everything that goes in and out
// of it noted. Only these two know how the program is put together.

namespace kartocheck::test {

// With its window. Time stands still in it.
class LoggedProgram : public Screen {
 public:
  LoggedProgram(const QString& scenarioFile, FlowLog& log);

  // What the test report says now.
  [[nodiscard]] TestReport MakeReport() const;
  [[nodiscard]] QString Report() const;

  ctapi::SimulatedPractice practice;
  CtApiSimulated simulated{practice};
  LoggedLibrary loggedLibrary;
  HookedLibrary library{loggedLibrary};
  SerialPortSimulated simulatedSerial{practice};
  LoggedSerialPort serial;
  PortDirectorySimulated directory{practice};
  LoggedEventLoop eventLoop;
  Form_MKT_Test window;
  LoggedDialogs dialogs;
  LoggedDisplay display;
  RunRecorder recorder;
  Bas_MKT_Test module;
  ViewState view;
  TestFlow flow;
};

struct ConsoleCall {
  bool json = false;
  bool eraseRecords = false;
  bool validate = false;
  std::optional<Port> port{};
  std::optional<Port> diagnose{};
  std::deque<std::string> typed{};  // answers to the questions of the diagnosis
};

// Without a window. Notes both streams and the exit status.
void RunConsoleCall(const QString& scenarioFile, const ConsoleCall& call, FlowLog& log);

}  // namespace kartocheck::test
