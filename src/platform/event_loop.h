#pragma once

#include <chrono>

namespace kartocheck {

// Cooperative waiting on the one user-interface thread.
class EventLoop {
 public:
  // Lets everything that is due run once, so that the window repaints.
  virtual void Yield() = 0;

  // Runs the event loop until the time is over.
  virtual void Wait(std::chrono::milliseconds duration) = 0;

  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

 protected:
  EventLoop() = default;
  virtual ~EventLoop() = default;
};

}  // namespace kartocheck
