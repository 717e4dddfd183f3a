#pragma once

#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/link_fixture.h"
#include "support/open_module.h"
#include "ui/main_window/fake_front_end.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The flows over a library, with a front end that records. COM 1 to 4 are there, each with a device
// that drives the line.
class Window {
 public:
  explicit Window(CtApi& api)
      : module({.api = api,
                .dialogs = dialogs,
                .display = display,
                .eventLoop = eventLoop,
                .serial = serial,
                .directory = directory,
                .terminate = [](const auto&) { throw Terminated{}; }}),
        flow(module, dialogs, display, view, frontEnd),
        ports(module, display, view) {
    frontEnd.Watch(view);
  }

  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  FakePortDirectory directory;
  FakeFrontEnd frontEnd;
  OpenModule module;
  ViewState view;
  TestFlow flow;
  PortFlow ports;
};

// Button indices.
inline constexpr int ScanButton = 0;
inline constexpr int DiagnosisButton = 1;
inline constexpr int StatusButton = 2;
inline constexpr int ReadButton = 3;
inline constexpr int CopyButton = 4;
inline constexpr int ResetButton = 5;

}  // namespace kartocheck::test
