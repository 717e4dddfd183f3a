#pragma once

#include <windows.h>

#include <utility>

namespace ctapi {

// Owns a handle of the kernel's. Functions that fail give null or INVALID_HANDLE_VALUE; it owns
// neither.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE value) : value_(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
  ~Handle() {
    if (value_ != nullptr) ::CloseHandle(value_);
  }
  Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  [[nodiscard]] bool IsOpen() const { return value_ != nullptr; }
  [[nodiscard]] HANDLE Get() const { return value_; }

 private:
  HANDLE value_ = nullptr;
};

}  // namespace ctapi
