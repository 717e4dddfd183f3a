#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kartocheck {

// A buffer that is handed to foreign code, with a guard zone behind it. A library that writes past
// the end fills the guard instead of other memory, and the damage is seen afterwards. The guard
// reaches up to the longest length that a CT-API call can report, 65,535 bytes.
class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::size_t size);

  [[nodiscard]] std::span<std::uint8_t> Bytes() { return {memory_.data(), size_}; }

  // Forgets what was written into the buffer. What is behind it stays as it is.
  void Clear();

  // False once a byte behind the buffer was changed.
  [[nodiscard]] bool IsIntact() const;

 private:
  std::size_t size_;
  std::vector<std::uint8_t> memory_;
};

}  // namespace kartocheck
