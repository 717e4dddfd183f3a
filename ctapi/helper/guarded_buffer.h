#pragma once

#include <cstddef>
#include <span>

#include "protocol/bytes.h"

namespace ctapi::helper {

// A buffer that is handed to foreign code, with a guard zone before and behind it. A library that
// writes outside the buffer fills a guard instead of other memory, and the damage is seen
// afterwards. The one behind reaches up to the longest length that a CT-API call can report, 65,535
// bytes, and further.
class GuardedBuffer {
 public:
  GuardedBuffer();

  // The buffer in a size of 0 to 65,535 bytes. Nothing of what was written into it before is in it.
  [[nodiscard]] std::span<std::uint8_t> Prepare(std::size_t size);

  // False once a byte outside the buffer was changed.
  [[nodiscard]] bool IsIntact() const;

 private:
  std::size_t size_ = 0;
  Bytes memory_;
};

}  // namespace ctapi::helper
