#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "platform/shown.h"

namespace kartocheck {

// The call to the CT-API library that has not come back yet. While it is waited for the event loop
// runs; whoever has become tired of it can give it up.
class PendingCall {
 public:
  explicit PendingCall(std::chrono::milliseconds patience = std::chrono::seconds(5))
      : patience_(patience) {}

  // Whether the call has not come back for as long as the patience lasts. False at its end.
  [[nodiscard]] Shown<bool>& Late() { return late_; }

  // The call that is waited for returns code -128 (HTSI error); the process of the library is
  // ended. Nothing where none is.
  void GiveUp() {
    if (giveUp_) giveUp_();
  }
  // Gives up whatever is late, now and later: the program is to end.
  void GiveUpWhateverIsLate() {
    isHurried_ = true;
    if (late_.Value()) GiveUp();
  }

  // For whoever makes the call: the wait for it, from its begin to its end, and that it has lasted
  // for the patience.
  class Wait {
   public:
    Wait(PendingCall& call, std::function<void()> giveUp) : call_(call) {
      call_.giveUp_ = std::move(giveUp);
    }
    ~Wait() {
      call_.giveUp_ = nullptr;
      if (call_.late_.Value()) call_.late_.Set(false);
    }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

   private:
    PendingCall& call_;
  };
  [[nodiscard]] std::chrono::milliseconds Patience() const { return patience_; }
  void BecomeLate() {
    late_.Set(true);
    if (isHurried_) GiveUp();
  }

 private:
  std::chrono::milliseconds patience_;
  Shown<bool> late_;
  std::function<void()> giveUp_;
  bool isHurried_ = false;
};

}  // namespace kartocheck
