#include "terminal/guarded_buffer.h"

#include <algorithm>
#include <cstring>

namespace kartocheck {

namespace {

constexpr std::size_t LongestReport = 65'535;
constexpr std::size_t LeastGuard = 4'096;
constexpr std::uint8_t Pattern = 0xA5;

}  // namespace

GuardedBuffer::GuardedBuffer(std::size_t size)
    : size_(size), memory_(std::max(size + LeastGuard, LongestReport), Pattern) {}

void GuardedBuffer::Clear() {
  std::fill_n(memory_.begin(), size_, Pattern);
}

bool GuardedBuffer::IsIntact() const {
  // Each byte of the guard equals the one before it, and the first is the pattern.
  const std::uint8_t* guard = memory_.data() + size_;
  const std::size_t length = memory_.size() - size_;
  return guard[0] == Pattern && std::memcmp(guard, guard + 1, length - 1) == 0;
}

}  // namespace kartocheck
