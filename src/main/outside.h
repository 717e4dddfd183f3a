#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

#include "main/command_line.h"
#include "platform/ct_api.h"
#include "platform/pending_call.h"
#include "platform/port_directory.h"
#include "platform/serial_port.h"
#include "simulator/simulated_practice.h"

namespace kartocheck {

// The outside world of a call: a library and the machine's ports, or a simulated practice.
class Outside {
 public:
  // Throws std::runtime_error where the line names what is not there.
  Outside(const CommandLine& line, const QString& programDirectory);

  [[nodiscard]] CtApi& Api() { return *api_; }
  [[nodiscard]] SerialPort& Serial() { return *serial_; }
  [[nodiscard]] const PortDirectory& Directory() const { return *directory_; }

  // The call that the library has not answered yet; simulated terminals answer at once.
  [[nodiscard]] PendingCall& Pending() { return pending_; }

  // Lets the library load while its caller does other things.
  void BeginLoading();

  // The library in use; empty as long as none was loaded.
  [[nodiscard]] QString LibraryText() const { return libraryText_(); }

  // The directories in which the schemas are looked for.
  [[nodiscard]] const QStringList& SchemaDirectories() const { return schemaDirectories_; }

 private:
  void Simulate(const QString& scenario, const QString& programDirectory);
  void UseMachine(const CommandLine& line, const QString& programDirectory);

  ctapi::SimulatedPractice practice_;
  PendingCall pending_;
  std::unique_ptr<CtApi> api_;
  std::unique_ptr<SerialPort> serial_;
  std::unique_ptr<const PortDirectory> directory_;
  std::function<void()> beginLoading_ = [] {};
  std::function<QString()> libraryText_;
  QStringList schemaDirectories_;
};

}  // namespace kartocheck
