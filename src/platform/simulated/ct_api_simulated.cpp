#include "platform/simulated/ct_api_simulated.h"

namespace kartocheck {

std::int8_t CtApiSimulated::Init(std::uint16_t ctn, std::uint16_t pn) {
  return practice_.Init(ctn, pn);
}

std::int8_t CtApiSimulated::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response, std::uint16_t& responseLength) {
  return practice_.Data(ctn, dad, sad, command, response, responseLength);
}

std::int8_t CtApiSimulated::Close(std::uint16_t ctn) {
  return practice_.Close(ctn);
}

std::int8_t CtApiSimulated::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  return practice_.GetBaudrate(ctn, baud);
}

}  // namespace kartocheck
