#pragma once

#include <cstdint>

// Codes of the CT-API, as every entry point returns them.
namespace ctapi::code {

inline constexpr std::int8_t Success = 0;
inline constexpr std::int8_t InvalidParameter = -1;
inline constexpr std::int8_t TerminalError = -8;
inline constexpr std::int8_t TransmissionError = -10;
inline constexpr std::int8_t BufferTooSmall = -11;
inline constexpr std::int8_t HostError = -127;
inline constexpr std::int8_t HtsiError = -128;

}  // namespace ctapi::code
