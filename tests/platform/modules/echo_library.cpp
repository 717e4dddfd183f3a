// A CT-API library for tests of the loader: it tells what it was called with.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "ctnrv32.h"

namespace {

// Commands with a meaning of their own; any other command is echoed.
constexpr std::uint8_t ReportTooMuch = 0xE1;
constexpr std::uint8_t WriteTooMuch = 0xE2;
constexpr std::uint8_t Throw = 0xE3;

constexpr int TestBaud = 19'200;

}  // namespace

// The low byte of the port number is the code.
std::int8_t CTDENRVT1_init(std::uint16_t /*ctn*/, std::uint16_t pn) {
  return static_cast<std::int8_t>(pn);
}

// The response: ctn, dad, sad, buffer size (two bytes each, high byte first), command, 90 00.
std::int8_t CTDENRVT1_data(std::uint16_t ctn, std::uint8_t* dad, std::uint8_t* sad,
                           std::uint16_t lenc, const std::uint8_t* command, std::uint16_t* lenr,
                           std::uint8_t* response) {
  const std::uint16_t size = *lenr;
  if (lenc > 0 && command[0] == Throw) throw std::runtime_error("a fault of the library");
  if (lenc > 0 && command[0] == WriteTooMuch) std::memset(response, 0, size + 100U);
  if (lenc > 0 && command[0] == ReportTooMuch) {
    *lenr = 65'535;
    return 0;
  }
  std::uint8_t* out = response;
  for (const unsigned number : {unsigned{ctn}, unsigned{*dad}, unsigned{*sad}, unsigned{size}}) {
    *out++ = static_cast<std::uint8_t>(number >> 8);
    *out++ = static_cast<std::uint8_t>(number);
  }
  out = std::copy_n(command, lenc, out);
  *out++ = 0x90;
  *out++ = 0x00;
  *lenr = static_cast<std::uint16_t>(out - response);
  *sad = *dad;
  *dad = 2;
  return 0;
}

// The low byte of the terminal number, negated, is the code.
std::int8_t CTDENRVT1_close(std::uint16_t ctn) {
  return static_cast<std::int8_t>(-ctn);
}

std::int8_t CT_get_baudrate(std::uint16_t ctn, std::int32_t* baud) {
  *baud = TestBaud + ctn;
  return 0;
}

#ifndef WITHOUT_PORT_INFO
// The low byte of the port number is the trouble, its high byte, negated, the code; 255 reports a
// name that is longer than the buffer.
std::int8_t KARTOCHECK_port_info(std::uint16_t pn, std::uint8_t* trouble, std::uint16_t* length,
                                 std::uint8_t* name) {
  constexpr std::string_view Name = "Gerät";
  *trouble = static_cast<std::uint8_t>(pn);
  std::memset(name, '.', *length);
  std::copy(Name.begin(), Name.end(), name);
  *length = *trouble == 255 ? std::uint16_t{65'535} : static_cast<std::uint16_t>(Name.size());
  return static_cast<std::int8_t>(-(pn >> 8));
}
#endif
