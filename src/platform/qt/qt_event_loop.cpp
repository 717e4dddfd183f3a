#include "platform/qt/qt_event_loop.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace kartocheck {

void QtEventLoop::Yield() {
  QCoreApplication::processEvents();
}

void QtEventLoop::Wait(std::chrono::milliseconds duration) {
  QEventLoop loop;
  QTimer::singleShot(duration, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace kartocheck
