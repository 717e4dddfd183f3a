#include "simulator/scripted_fault.h"

#include <algorithm>
#include <random>

namespace ctapi {

bool ScriptedFault::Concerns(ByteView command) const {
  return command.size() >= CommandPrefix.size() &&
         std::equal(CommandPrefix.begin(), CommandPrefix.end(), command.begin());
}

Bytes GarbageOf(std::size_t length, std::uint32_t seed) {
  std::mt19937 generator(seed);
  Bytes bytes(length);
  std::generate(bytes.begin(), bytes.end(),
                [&generator] { return static_cast<std::uint8_t>(generator() & 0xFF); });
  return bytes;
}

}  // namespace ctapi
