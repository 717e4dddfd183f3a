#pragma once

#include <QString>

#include "app/bas_mkt_test.h"
#include "gui/support/hooked_library.h"
#include "gui/support/quick_event_loop.h"
#include "gui/support/screen.h"
#include "support/dialogue.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/open_module.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The program as it stands on the screen: window, flows and procedures over a library that replays
// a dialogue.
class Program : public Screen {
 public:
  explicit Program(const std::string& dialogue = "", const Form_MKT_Test::Options& options = {});

  Dialogue dialogue;
  HookedLibrary library;
  Form_MKT_Test window;
  QuickEventLoop eventLoop;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  FakePortDirectory directory;
  OpenModule module;
  ViewState view;
  TestFlow flow;
};

}  // namespace kartocheck::test
