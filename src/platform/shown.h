#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace kartocheck {

// A value that is on show. Whoever draws it is told each time it is set, to the value that it had
// before as well: what is drawn may have changed by itself meanwhile.
template <typename T>
class Shown {
 public:
  Shown() = default;
  explicit Shown(T value) : value_(std::move(value)) {}
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;

  [[nodiscard]] const T& Value() const { return value_; }

  void Set(T value) {
    value_ = std::move(value);
    for (const auto& draw : watchers_) draw(value_);
  }

  // Draws the value now and each time it is set. What `draw` refers to outlives this.
  void Watch(std::function<void(const T&)> draw) {
    draw(value_);
    watchers_.push_back(std::move(draw));
  }

 private:
  T value_{};
  std::vector<std::function<void(const T&)>> watchers_;
};

}  // namespace kartocheck
