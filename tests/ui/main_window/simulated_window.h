#pragma once

#include <string>
#include <vector>

#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/link_fixture.h"
#include "support/open_module.h"
#include "support/simulated_ports.h"
#include "ui/main_window/fake_front_end.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The flows over a simulated practice, with a front end that records.
class SimulatedWindow {
 public:
  SimulatedWindow() : SimulatedWindow(nullptr) {}

  // On a machine that knows this of its ports.
  explicit SimulatedWindow(const PortDirectory& machine) : SimulatedWindow(&machine) {}

 private:
  explicit SimulatedWindow(const PortDirectory* machine)
      : module({.api = api,
                .dialogs = dialogs,
                .display = display,
                .eventLoop = eventLoop,
                .serial = serial,
                .directory = machine == nullptr ? directory : *machine,
                .terminate = [](const auto&) { throw Terminated{}; }}),
        flow(module, dialogs, display, view, frontEnd),
        ports(module, display, view) {
    frontEnd.Watch(view);
    const auto note = [this](const std::string& call) {
      log.push_back(call);
      if (onCall) onCall(call);
    };
    display.onCall = note;
    frontEnd.onCall = note;
    frontEnd.onChange = note;
  }

 public:
  ctapi::SimulatedPractice practice;
  CtApiSimulated api{practice};
  SerialPortSimulated serial{practice};
  PortDirectorySimulated directory{practice};
  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  FakeFrontEnd frontEnd;
  OpenModule module;
  ViewState view;
  TestFlow flow;
  PortFlow ports;

  // What display and front end were called for, in order.
  std::vector<std::string> log;
  std::function<void(const std::string&)> onCall;
};

}  // namespace kartocheck::test
