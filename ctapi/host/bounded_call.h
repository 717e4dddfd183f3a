#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace ctapi::host {

// What a foreign call returns, or nothing where it does not return in time. Such a call goes on in
// a thread of its own for as long as it likes, so it must own all that it uses; should it return
// after all, its result is undone.
template <typename Result>
[[nodiscard]] std::optional<Result> CallWithin(std::chrono::milliseconds longest,
                                               std::function<Result()> call,
                                               std::function<void(const Result&)> undo) {
  struct Meeting {
    std::mutex Mutex;
    std::condition_variable Returned;
    std::optional<Result> Value;
    bool IsOver = false;
  };
  const auto meeting = std::make_shared<Meeting>();
  std::thread([meeting, call = std::move(call), undo = std::move(undo)] {
    Result value = call();
    {
      const std::lock_guard lock(meeting->Mutex);
      if (!meeting->IsOver) {
        meeting->Value = std::move(value);
        meeting->Returned.notify_one();
        return;
      }
    }
    undo(value);
  }).detach();
  std::unique_lock lock(meeting->Mutex);
  (void)meeting->Returned.wait_for(lock, longest, [&] { return meeting->Value.has_value(); });
  meeting->IsOver = true;
  return std::move(meeting->Value);
}

}  // namespace ctapi::host
