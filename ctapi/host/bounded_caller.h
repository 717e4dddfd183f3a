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

// Makes foreign calls that may not return, in a thread of its own. To be used by one caller at a
// time.
class BoundedCaller {
 public:
  BoundedCaller() = default;
  ~BoundedCaller();
  BoundedCaller(const BoundedCaller&) = delete;
  BoundedCaller& operator=(const BoundedCaller&) = delete;

  // What the call returns, or nothing where it does not return in time. Such a call goes on for as
  // long as it likes, so it must own all that it uses; should it return after all, its result is
  // undone.
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
    Start([meeting, call = std::move(call), undo = std::move(undo)] {
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
    });
    std::unique_lock lock(meeting->Mutex);
    (void)meeting->Returned.wait_for(lock, longest, [&] { return meeting->Value.has_value(); });
    meeting->IsOver = true;
    if (!meeting->Value) Leave();
    return std::move(meeting->Value);
  }

 private:
  // Where the thread finds its work; it outlives the caller that leaves it.
  struct Desk {
    std::mutex Mutex;
    std::condition_variable Changed;
    std::function<void()> Work;
    bool IsClosed = false;
  };

  static void WorkAt(const std::shared_ptr<Desk>& desk);
  void Start(std::function<void()> work);
  void Leave();
  void Close();

  std::shared_ptr<Desk> desk_;
  std::thread worker_;
};

}  // namespace ctapi::host
