#pragma once

#include <cstdint>

// CT-BCS, the commands that every card terminal understands: class, instructions, functional units
// in P1, data objects in P2 of GET STATUS and their values.
namespace ctapi::ct_bcs {

inline constexpr std::uint8_t TerminalClass = 0x20;
inline constexpr std::uint8_t InsReset = 0x11;
inline constexpr std::uint8_t InsRequestIcc = 0x12;
inline constexpr std::uint8_t InsGetStatus = 0x13;
inline constexpr std::uint8_t InsEjectIcc = 0x15;
// Not of CT-BCS but of the makers known here: how the terminal is connected.
inline constexpr std::uint8_t InsConnectionQuery = 0x71;

inline constexpr std::uint8_t UnitTerminal = 0x00;
inline constexpr std::uint8_t UnitSlot1 = 0x01;

inline constexpr std::uint8_t ObjectManufacturer = 0x46;
inline constexpr std::uint8_t ObjectCardStatus = 0x80;
inline constexpr std::uint8_t ObjectFunctionalUnits = 0x81;

inline constexpr std::uint8_t CardAbsent = 0x00;
inline constexpr std::uint8_t CardPresent = 0x01;
inline constexpr std::uint8_t CardConnected = 0x05;

// What RESET ICC and REQUEST ICC return of the card (lower half of P2).
inline constexpr std::uint8_t NoCardData = 0x00;
inline constexpr std::uint8_t WholeAtr = 0x01;

}  // namespace ctapi::ct_bcs
