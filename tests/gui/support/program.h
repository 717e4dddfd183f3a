#pragma once

#include <QEventLoop>
#include <QString>
#include <QWidget>

#include <functional>

#include "app/bas_mkt_test.h"
#include "gui/support/hooked_library.h"
#include "gui/support/quick_event_loop.h"
#include "support/dialogue.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The program as it stands on the screen: window, flows and procedures over a library that replays
// a dialogue.
class Program {
 public:
  explicit Program(const std::string& dialogue = "", const Form_MKT_Test::Options& options = {});

  // The control of this object name; fails the test where there is none.
  template <typename T = QWidget>
  [[nodiscard]] T& Find(const QString& name) {
    auto* found = window.findChild<T*>(name);
    if (found == nullptr) ThrowNotFound(name);
    return *found;
  }

  // A click with the left mouse button on the middle of the control.
  void Click(const QString& name);
  void Press(const QString& name, Qt::Key key);

  // The text that the control of this name shows, as the user reads it.
  [[nodiscard]] QString Text(const QString& name);

  Dialogue dialogue;
  HookedLibrary library;
  Form_MKT_Test window;
  QuickEventLoop eventLoop;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  FakePortDirectory directory;
  Bas_MKT_Test module;
  TestFlow flow;

 private:
  [[noreturn]] static void ThrowNotFound(const QString& name);
};

// Runs the event loop until the condition holds; false when it does not within a few seconds.
[[nodiscard]] bool WaitUntil(const std::function<bool()>& condition);

}  // namespace kartocheck::test
