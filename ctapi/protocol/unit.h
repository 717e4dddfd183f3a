#pragma once

#include <cstdint>

// Addresses of the CT-API (dad, sad) and of the block protocol.
namespace ctapi {

// The card in the terminal's first slot (ISO 7816-4, class 00) and the terminal itself (CT-BCS,
// class 20).
enum class Unit : std::uint8_t { Card = 0, Terminal = 1 };

// The PC.
inline constexpr std::uint8_t HostAddress = 2;

[[nodiscard]] constexpr std::uint8_t AddressOf(Unit unit) {
  return static_cast<std::uint8_t>(unit);
}

[[nodiscard]] constexpr bool IsUnit(std::uint8_t address) {
  return address == AddressOf(Unit::Card) || address == AddressOf(Unit::Terminal);
}

}  // namespace ctapi
