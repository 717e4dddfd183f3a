#pragma once

#include "platform/event_loop.h"

namespace kartocheck {

// The event loop of the running QCoreApplication.
class QtEventLoop final : public EventLoop {
 public:
  void Yield() override;
  void Wait(std::chrono::milliseconds duration) override;
};

}  // namespace kartocheck
