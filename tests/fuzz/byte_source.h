#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kartocheck::fuzz {

// The fuzzer's input, taken from the front. Past its end everything is 0 or empty.
class ByteSource {
 public:
  ByteSource(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  [[nodiscard]] bool IsEmpty() const { return rest_.empty(); }

  std::uint8_t Byte() {
    const auto taken = Bytes(1);
    return taken.empty() ? std::uint8_t{0} : taken.front();
  }

  // Up to `count` bytes.
  std::span<const std::uint8_t> Bytes(std::size_t count) {
    const auto taken = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }

  std::span<const std::uint8_t> Rest() { return Bytes(rest_.size()); }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace kartocheck::fuzz
