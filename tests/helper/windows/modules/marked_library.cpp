// Entry points under the names that some compilers export: with an underscore in front and the
// number of bytes that they take from the stack.

#include <cstdint>

extern "C" {

std::int8_t __stdcall CTDENRVT1_init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  return 0;
}

std::int8_t __stdcall CTDENRVT1_data(std::uint16_t /*ctn*/, std::uint8_t* /*dad*/,
                                     std::uint8_t* /*sad*/, std::uint16_t /*lenc*/,
                                     const std::uint8_t* /*command*/, std::uint16_t* /*lenr*/,
                                     std::uint8_t* /*response*/) {
  return 0;
}

std::int8_t __stdcall CTDENRVT1_close(std::uint16_t /*ctn*/) {
  return 0;
}
}
