#pragma once

#include <array>
#include <cstdint>

// Memory cards with synchronous transmission (ISO 7816-10), to which the KVK belongs.
namespace ctapi {

// H1 to H4, which such a card sends at its reset, and with which its memory begins.
using MemoryCardHeader = std::array<std::uint8_t, 4>;

// Of the cards in use as KVK: with a protected memory of 256 bytes, and of 1,024 bytes.
inline constexpr std::array<MemoryCardHeader, 2> MemoryCardHeaders{
    {{0xA2, 0x13, 0x10, 0x91}, {0x92, 0x23, 0x10, 0x91}}};

}  // namespace ctapi
