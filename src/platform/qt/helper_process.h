#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <optional>

#include "helper/message.h"
#include "platform/library_fault.h"
#include "platform/pending_call.h"

namespace kartocheck {

// The program's helper, which holds the CT-API library, and the pipes to it. One call is under way
// at a time.
class HelperProcess {
 public:
  // Starts the helper. Throws LibraryUnusable where that fails.
  HelperProcess(const QString& program, const QStringList& candidates);
  // Lets the helper end in order; one that does not is ended.
  ~HelperProcess();
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  // Ends the helper at once, whatever the library is doing.
  void Kill();

  void Send(const ctapi::helper::Message& call);

  // Waits for the next message, with the event loop running once it takes longer than a moment.
  // Nothing where the call was given up. Throws LibraryUnusable when the helper has ended.
  [[nodiscard]] std::optional<ctapi::helper::Message> Receive(PendingCall& pending);
  // The same without the event loop. Nothing when none comes within the time.
  [[nodiscard]] std::optional<ctapi::helper::Message> Receive(std::chrono::milliseconds longest);

 private:
  [[nodiscard]] bool HasMessage();
  [[nodiscard]] ctapi::helper::Message TakeMessage();
  [[nodiscard]] bool WaitBlocking(std::chrono::milliseconds longest);
  [[nodiscard]] bool WaitInEventLoop(PendingCall& pending);
  [[noreturn]] void TellOfEnd();

  QProcess process_;
  ctapi::Bytes received_;
};

}  // namespace kartocheck
