#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "protocol/bytes.h"

namespace ctapi {

// SW1 SW2, the two bytes that end every response (ISO 7816-4, CT-BCS).
class StatusWord {
 public:
  constexpr explicit StatusWord(std::uint16_t value) : value_(value) {}
  constexpr StatusWord(std::uint8_t sw1, std::uint8_t sw2)
      : value_(static_cast<std::uint16_t>(sw1 << 8 | sw2)) {}

  [[nodiscard]] constexpr std::uint16_t Value() const { return value_; }
  [[nodiscard]] constexpr std::uint8_t Sw1() const {
    return static_cast<std::uint8_t>(value_ >> 8);
  }
  [[nodiscard]] constexpr std::uint8_t Sw2() const {
    return static_cast<std::uint8_t>(value_ & 0xFF);
  }

  // As they stand in a response.
  [[nodiscard]] constexpr std::array<std::uint8_t, 2> BothBytes() const { return {Sw1(), Sw2()}; }

  friend constexpr bool operator==(StatusWord, StatusWord) = default;

 private:
  std::uint16_t value_;
};

namespace sw {

inline constexpr std::size_t Length = 2;  // bytes

// Done; of a card's activation: it is a memory card.
inline constexpr StatusWord Ok{0x9000};
// CT-BCS: a processor card was activated; of EJECT ICC: the card was taken.
inline constexpr StatusWord OkProcessorCard{0x9001};
// RESET CT: the terminal keeps records, or extended records.
inline constexpr StatusWord MobileTerminal{0x9500};
inline constexpr StatusWord MobileExtended{0x9501};
// CT-BCS: nothing happened within the waiting time: no card came, or the card was not taken.
inline constexpr StatusWord NoCard{0x6200};
inline constexpr StatusWord CardAlreadyPresent{0x6201};  // CT-BCS: the card was activated before
inline constexpr StatusWord EndOfFile{0x6282};           // the file ended before the asked length
inline constexpr StatusWord Deactivated{0x6283};         // the selected file is deactivated
inline constexpr StatusWord ResetFailed{0x6400};         // CT-BCS: the card does not answer
// A stored record: the card that guards it (HBA or SMC-B) has not released it.
inline constexpr StatusWord ReadFailed{0x6501};
inline constexpr StatusWord WrongLength{0x6700};
inline constexpr StatusWord NotAllowed{0x6900};
inline constexpr StatusWord NoTransparentFile{0x6981};
inline constexpr StatusWord SecurityStatus{0x6982};   // security status not satisfied
inline constexpr StatusWord ConditionsOfUse{0x6985};  // conditions of use not satisfied
inline constexpr StatusWord NoFileSelected{0x6986};
inline constexpr StatusWord WrongParameters{0x6A00};
inline constexpr StatusWord NotFound{0x6A82};  // file or application
inline constexpr StatusWord RecordNotFound{0x6A83};
inline constexpr StatusWord IncorrectP1P2{0x6A86};
inline constexpr StatusWord WrongOffset{0x6B00};
inline constexpr StatusWord UnknownInstruction{0x6D00};
inline constexpr StatusWord UnknownClass{0x6E00};
inline constexpr StatusWord NoDiagnosis{0x6F00};  // no precise diagnosis

// SW1 of a card behind the protocol T=0 that has SW2 more bytes, or wants SW2 as Le.
inline constexpr std::uint8_t MoreDataSw1 = 0x61;
inline constexpr std::uint8_t OtherLengthSw1 = 0x6C;

}  // namespace sw

// What ends a response of at least two bytes.
[[nodiscard]] constexpr StatusWord StatusWordOf(ByteView response) {
  return {response[response.size() - sw::Length], response[response.size() - 1]};
}

}  // namespace ctapi
