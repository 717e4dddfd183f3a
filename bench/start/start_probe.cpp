#include <QApplication>
#include <QTimerEvent>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

// Prints, when a window has been painted for the first time, its name and what the process has cost
// until then: milliseconds of processor time and kilobytes of resident memory. A modal window is
// closed then; after any other the process ends.

namespace {

double ProcessorMilliseconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

long ResidentKilobytes() {
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * sysconf(_SC_PAGESIZE) / 1024;
}

class Probe final : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* object, QEvent* event) override {
    auto* window = qobject_cast<QWidget*>(object);
    const bool isPainted = event->type() == QEvent::Paint && window != nullptr &&
                           window->isWindow() && window != last_;
    if (isPainted) {
      last_ = window;
      // When everything that waits behind the painting is done.
      startTimer(0);
    }
    return false;
  }

  void timerEvent(QTimerEvent* event) override {
    killTimer(event->timerId());
    Report(*last_);
  }

 private:
  static void Report(QWidget& window) {
    std::printf("%s %.3f %ld\n", qPrintable(window.objectName()), ProcessorMilliseconds(),
                ResidentKilobytes());
    if (window.isModal()) {
      window.close();
    } else {
      std::fflush(stdout);
      std::_Exit(EXIT_SUCCESS);
    }
  }

  QWidget* last_ = nullptr;
};

void LookOn() {
  qApp->installEventFilter(new Probe(qApp));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(LookOn)
