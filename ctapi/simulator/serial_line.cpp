#include "simulator/serial_line.h"

#include <algorithm>

#include "protocol/block.h"

namespace ctapi {

Bytes SerialLine::AnswerTo(std::int32_t baud, ByteView sent) const {
  const Bytes request = Encode({NadTo(Unit::Terminal), pcb::Resynch});
  const bool understood =
      Port == State::Present && baud == Baud && std::ranges::equal(sent, request);
  if (!understood) return {};
  Bytes answer = Encode({NadFrom(Unit::Terminal), pcb::Resynch | pcb::Response});
  switch (Answer) {
    case Probe::Right:
      return answer;
    case Probe::FifthByte:
      answer.push_back(0x00);
      return answer;
    case Probe::Garbage:
      return {0x3F, 0x3F, 0x0D, 0x0A};
    case Probe::Silent:
      break;
  }
  return {};
}

}  // namespace ctapi
