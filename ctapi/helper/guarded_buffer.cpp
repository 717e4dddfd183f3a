#include "helper/guarded_buffer.h"

#include <algorithm>
#include <cstring>

namespace ctapi::helper {

namespace {

constexpr std::size_t LongestReport = 65'535;
constexpr std::size_t Guard = 4'096;
constexpr std::uint8_t Pattern = 0xA5;

// Each byte equals the one before it, and the first is the pattern.
bool IsPattern(ByteView zone) {
  return zone[0] == Pattern && std::memcmp(zone.data(), zone.data() + 1, zone.size() - 1) == 0;
}

}  // namespace

GuardedBuffer::GuardedBuffer() : memory_(Guard + LongestReport + Guard, Pattern) {}

std::span<std::uint8_t> GuardedBuffer::Prepare(std::size_t size) {
  const std::span<std::uint8_t> rest = std::span(memory_).subspan(Guard);
  std::ranges::fill(rest.first(size_), Pattern);
  size_ = std::min(size, LongestReport);
  return rest.first(size_);
}

bool GuardedBuffer::IsIntact() const {
  const ByteView memory(memory_);
  return IsPattern(memory.first(Guard)) && IsPattern(memory.subspan(Guard + size_));
}

}  // namespace ctapi::helper
