#pragma once

#include <functional>
#include <vector>

#include "platform/event_loop.h"

namespace kartocheck::test {

// Counts yields and notes waits instead of waiting.
class FakeEventLoop final : public EventLoop {
 public:
  void Yield() override {
    ++yields;
    if (onYield) onYield();
  }
  void Wait(std::chrono::milliseconds duration) override { waits.push_back(duration); }

  int yields = 0;
  std::vector<std::chrono::milliseconds> waits;
  std::function<void()> onYield;
};

}  // namespace kartocheck::test
