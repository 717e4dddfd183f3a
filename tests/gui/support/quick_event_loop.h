#pragma once

#include "platform/qt/qt_event_loop.h"

namespace kartocheck::test {

// Qt's event loop with short waits, for tests in which no device needs the time.
class QuickEventLoop final : public EventLoop {
 public:
  void Yield() override { loop_.Yield(); }
  void Wait(std::chrono::milliseconds /*duration*/) override {
    loop_.Wait(std::chrono::milliseconds(1));
  }

 private:
  QtEventLoop loop_;
};

}  // namespace kartocheck::test
