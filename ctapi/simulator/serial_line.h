#pragma once

#include <cstdint>

#include "simulator/bytes.h"

namespace ctapi {

// A serial port as the operating system shows it, and what stands at its other end.
struct SerialLine {
  enum class State {
    Present,
    Absent,   // no such port
    InUse,    // another program holds it
    Failing,  // it is there, but opening it fails for another reason
  };
  // How the device answers a resynchronisation request at its own rate.
  enum class Probe {
    Silent,
    Right,
    FifthByte,  // the right answer and one byte more
    Garbage,    // four other bytes
  };

  State Port = State::Present;
  bool Signal = false;  // a device drives the line (DSR)
  Probe Answer = Probe::Silent;
  std::int32_t Baud = 9600;  // the only rate at which it answers

  // What the line delivers after these bytes were sent at this rate.
  [[nodiscard]] Bytes AnswerTo(std::int32_t baud, ByteView sent) const;
};

}  // namespace ctapi
