#include "fuzz/answer_source.h"

#include <algorithm>
#include <array>

namespace kartocheck::fuzz {

namespace {

constexpr std::int8_t TransmissionError = -10;

}  // namespace

std::int8_t AnswerSource::Init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  ++opens;
  return 0;
}

std::int8_t AnswerSource::Data(std::uint16_t /*ctn*/, std::uint8_t& dad, std::uint8_t& sad,
                               std::span<const std::uint8_t> /*command*/,
                               std::span<std::uint8_t> response, std::uint16_t& responseLength) {
  ++exchanges;
  sad = dad;
  dad = 2;
  responseLength = 0;
  if (source_.IsEmpty()) return TransmissionError;

  const std::uint8_t kind = source_.Byte();
  std::size_t length = kind;
  if (kind >= 0xF0 && kind <= 0xF9) length = std::size_t{100} * (kind - 0xF0U);
  if (kind == 0xFA) return static_cast<std::int8_t>(source_.Byte());
  if (kind == 0xFB) {
    responseLength = 65'535;
    return 0;
  }
  if (kind >= 0xFC) length = 2;
  const auto bytes = source_.Bytes(std::min(length, response.size()));
  std::copy(bytes.begin(), bytes.end(), response.begin());
  responseLength = static_cast<std::uint16_t>(bytes.size());
  return 0;
}

std::int8_t AnswerSource::Close(std::uint16_t /*ctn*/) {
  ++closes;
  return 0;
}

std::int8_t AnswerSource::GetBaudrate(std::uint16_t /*ctn*/, std::int32_t& baud) {
  baud = 9600;
  return 0;
}

int PortNumber(std::uint8_t choice) {
  constexpr std::array Ports{1, 3, 256, 257, 8191, 8192, 8447, 8448};
  return Ports.at(choice % Ports.size());
}

}  // namespace kartocheck::fuzz
