#include "simulator/serial_line.h"

#include <algorithm>
#include <array>

namespace ctapi {

namespace {

// Block frames (T=1): node address, control byte, length, check.
constexpr std::array<std::uint8_t, 4> ResynchRequest{0x12, 0xC0, 0x00, 0xD2};

}  // namespace

Bytes SerialLine::AnswerTo(std::int32_t baud, ByteView sent) const {
  const bool understood =
      Port == State::Present && baud == Baud &&
      std::equal(sent.begin(), sent.end(), ResynchRequest.begin(), ResynchRequest.end());
  if (!understood) return {};
  switch (Answer) {
    case Probe::Right:
      return {0x21, 0xE0, 0x00, 0xC1};
    case Probe::FifthByte:
      return {0x21, 0xE0, 0x00, 0xC1, 0x00};
    case Probe::Garbage:
      return {0x3F, 0x3F, 0x0D, 0x0A};
    case Probe::Silent:
      break;
  }
  return {};
}

}  // namespace ctapi
