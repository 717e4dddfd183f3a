#pragma once

#include <QStringList>

#include <functional>
#include <memory>

#include "platform/ct_api.h"
#include "platform/pending_call.h"
#include "platform/port_directory.h"
#include "platform/serial_port.h"
#include "platform/terminate.h"

class QCoreApplication;

namespace kartocheck {

// The application object that a window needs.
[[nodiscard]] std::unique_ptr<QCoreApplication> MakeWindowApplication(int& argc, char** argv);

// The application object of a console run that draws: it needs no display.
[[nodiscard]] std::unique_ptr<QCoreApplication> MakeFontApplication(int& argc, char** argv);

// What the window works with.
struct WindowSetup {
  CtApi& api;
  SerialPort& serial;
  const PortDirectory& directory;
  PendingCall& pending;
  Terminate terminate;
  QStringList schemaDirectories;
  std::function<QString()> library;  // what the CT-API stands for, as known at the time
  bool simulation = false;
};

// Shows the user information, then the main window, and runs until that is closed. Returns the exit
// status.
[[nodiscard]] int RunWindow(const WindowSetup& setup);

}  // namespace kartocheck
