#include "host/serial_link.h"

#include "protocol/status_word.h"

namespace ctapi::host {

namespace {

constexpr std::array<std::int32_t, 5> Rates{9600, 19200, 38400, 57600, 115200};

}  // namespace

OpenedLink SerialLink::Open(std::unique_ptr<LinePort> line) try {
  std::unique_ptr<SerialLink> link(new SerialLink(std::move(line)));
  if (!link->FindTerminal()) return {.Code = code::TransmissionError};
  return {code::Success, std::move(link)};
} catch (const LineLost&) {
  return {.Code = code::TransmissionError};
}

bool SerialLink::FindTerminal() {
  for (const std::int32_t rate : Rates) {
    if (!protocol_.TryBaud(rate)) continue;
    baud_ = rate;
    return protocol_.AnnounceBlockSize();
  }
  return false;
}

std::int8_t SerialLink::Exchange(Unit unit, ByteView command, Bytes& response) {
  response.clear();
  if (isLost_) return code::HtsiError;
  switch (protocol_.Exchange(unit, command, response)) {
    case BlockProtocol::Outcome::Answered:
      if (response.size() >= sw::Length) return code::Success;
      response.clear();
      return code::TransmissionError;
    case BlockProtocol::Outcome::Broken:
      return code::TransmissionError;
    case BlockProtocol::Outcome::TooLong:
      return code::BufferTooSmall;
    case BlockProtocol::Outcome::Silent:
      break;
  }
  isLost_ = true;
  return code::TransmissionError;
}

}  // namespace ctapi::host
