#include "host/parity_marks.h"

namespace ctapi::host {

void ParityMarks::Take(ByteView marked, LinePort::Reception& into) {
  constexpr std::uint8_t Mark = 0xFF;
  constexpr std::uint8_t DamagedFollows = 0x00;
  for (const std::uint8_t byte : marked) {
    switch (expecting_) {
      case Expecting::Plain:
        if (byte == Mark) {
          expecting_ = Expecting::Meaning;
        } else {
          into.Received.push_back(byte);
        }
        break;
      case Expecting::Meaning:
        expecting_ = byte == DamagedFollows ? Expecting::Damaged : Expecting::Plain;
        if (byte != DamagedFollows) into.Received.push_back(byte);
        break;
      case Expecting::Damaged:
        expecting_ = Expecting::Plain;
        into.Received.push_back(byte);
        into.Damaged = true;
        break;
    }
  }
}

}  // namespace ctapi::host
