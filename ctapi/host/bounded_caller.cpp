#include "host/bounded_caller.h"

namespace ctapi::host {

BoundedCaller::~BoundedCaller() {
  if (!desk_) return;
  Close();
  worker_.join();
}

void BoundedCaller::WorkAt(const std::shared_ptr<Desk>& desk) {
  for (;;) {
    std::function<void()> work;
    {
      std::unique_lock lock(desk->Mutex);
      desk->Changed.wait(lock, [&] { return desk->Work || desk->IsClosed; });
      if (!desk->Work) return;
      std::swap(work, desk->Work);
    }
    work();
  }
}

void BoundedCaller::Start(std::function<void()> work) {
  if (!desk_) {
    desk_ = std::make_shared<Desk>();
    worker_ = std::thread(&BoundedCaller::WorkAt, desk_);
  }
  const std::lock_guard lock(desk_->Mutex);
  desk_->Work = std::move(work);
  desk_->Changed.notify_one();
}

// The thread ends with the call that keeps it; the next call has another one.
void BoundedCaller::Leave() {
  Close();
  worker_.detach();
  desk_.reset();
}

void BoundedCaller::Close() {
  const std::lock_guard lock(desk_->Mutex);
  desk_->IsClosed = true;
  desk_->Changed.notify_one();
}

}  // namespace ctapi::host
