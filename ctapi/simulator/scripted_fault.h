#pragma once

#include <cstdint>
#include <variant>

#include "simulator/bytes.h"

namespace ctapi {

// An exchange that goes wrong by order of a test or a scenario.
struct ScriptedFault {
  // Only commands that begin with these bytes; empty: every command.
  Bytes CommandPrefix{};
  // Which of the exchanges with such a command on the port, counted from 1; 0: each of them.
  unsigned Exchange = 0;
  // A CT-API code without a response, or a response in place of the terminal's own.
  std::variant<std::int8_t, Bytes> Result{};
  // Whether the terminal has carried the command out all the same.
  bool CarriedOut = false;

  [[nodiscard]] bool Concerns(ByteView command) const;
};

// The same random bytes for the same seed.
[[nodiscard]] Bytes GarbageOf(std::size_t length, std::uint32_t seed);

}  // namespace ctapi
