#pragma once

#include <array>

#include "platform/shown.h"

namespace kartocheck {

// The two activity lamps, by their item number.
enum class Lamp { Card = 0, Terminal = 1 };
inline constexpr int LampCount = 2;

enum class LampState {
  Off,      // colour of a button face: no link
  Waiting,  // yellow (255, 255, 0): a command is outstanding
  Answered  // green (0, 255, 0): a response has come
};

// What the lamps show.
class Lamps {
 public:
  [[nodiscard]] Shown<LampState>& operator[](Lamp lamp) {
    return states_.at(static_cast<std::size_t>(lamp));
  }

 private:
  std::array<Shown<LampState>, LampCount> states_;
};

}  // namespace kartocheck
