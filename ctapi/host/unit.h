#pragma once

#include <cstdint>

namespace ctapi::host {

// Addresses of the CT-API and of the block protocol: the card in the first slot, the terminal, and
// the host, which is this side.
enum class Unit : std::uint8_t { Card = 0, Terminal = 1 };
inline constexpr std::uint8_t HostAddress = 2;

}  // namespace ctapi::host
