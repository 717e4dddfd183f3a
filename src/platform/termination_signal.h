#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace kartocheck {

// Calls back on the event loop's thread when the operating system asks the program to end: on POSIX
// systems by SIGTERM, SIGINT and SIGHUP, on Windows by Ctrl-C, Ctrl-Break, closing the console, the
// end of the session or WM_CLOSE. There is at most one at a time.
class TerminationSignal {
 public:
  explicit TerminationSignal(std::function<void()> onRequest);
  ~TerminationSignal();
  TerminationSignal(const TerminationSignal&) = delete;
  TerminationSignal& operator=(const TerminationSignal&) = delete;

 private:
  class Watcher;
  std::unique_ptr<Watcher> watcher_;
};

}  // namespace kartocheck
