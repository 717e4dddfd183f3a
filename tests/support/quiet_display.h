#pragma once

#include "platform/display.h"
#include "platform/event_loop.h"

namespace kartocheck::test {

// A display and an event loop where only the work behind them matters; they count what they are
// asked for.
class QuietDisplay final : public Display {
 public:
  void ShowStatusText(const QString& /*text*/) override { ++texts; }

  int texts = 0;
};

class QuietEventLoop final : public EventLoop {
 public:
  void Yield() override { ++turns; }
  void Wait(std::chrono::milliseconds /*duration*/) override { ++turns; }

  int turns = 0;
};

}  // namespace kartocheck::test
