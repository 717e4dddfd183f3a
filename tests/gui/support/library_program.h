#pragma once

#include <QString>

#include <chrono>

#include "app/bas_mkt_test.h"
#include "gui/support/quick_event_loop.h"
#include "gui/support/screen.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/link_fixture.h"
#include "support/loaded_library.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/run_recorder.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The window over a CT-API library in the built helper, put together as at the program's start,
// with COM 1 to 4 there. Where the program would end it throws Terminated, and the fault stands in
// `fault`.
class LibraryProgram {
 public:
  LibraryProgram(const char* file, std::chrono::milliseconds patience)
      : pending(patience), library(LoadedLibrary({QString::fromLocal8Bit(file)}, pending)) {
    flow.Watch(pending);
    window.Attach(flow, view, module);
    window.show();
    Activate(window);
  }

  LibraryFault fault;
  PendingCall pending;
  CtApiLibrary library;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  FakePortDirectory directory;
  QuickEventLoop eventLoop;
  Form_MKT_Test window{{}};
  RunRecorder recorder{window.Boxes(), window, [] { return QTime(12, 0); }};
  Bas_MKT_Test module{{.api = library,
                       .dialogs = recorder,
                       .display = recorder,
                       .eventLoop = eventLoop,
                       .serial = serial,
                       .directory = directory,
                       .terminate =
                           [this](const LibraryFault& told) {
                             fault = told;
                             throw Terminated{};
                           },
                       .onExitRequest = [this] { pending.GiveUpWhateverIsLate(); }}};
  ViewState view;
  TestFlow flow{module, recorder, recorder, view, window};
  Screen screen{window};
};

}  // namespace kartocheck::test
