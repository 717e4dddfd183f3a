#pragma once

#include <optional>

#include "protocol/bytes.h"
#include "protocol/unit.h"

// Blocks of the protocol T=1 (ISO 7816-3) as terminals use them on a serial line: node address
// (NAD), protocol control byte (PCB), length (LEN), information, and the XOR of all of that (LRC).
namespace ctapi {

// NAD is the destination in the upper half and the source in the lower one.
[[nodiscard]] constexpr std::uint8_t NadTo(Unit unit) {
  return static_cast<std::uint8_t>(AddressOf(unit) << 4 | HostAddress);
}
[[nodiscard]] constexpr std::uint8_t NadFrom(Unit unit) {
  return static_cast<std::uint8_t>(HostAddress << 4 | AddressOf(unit));
}

namespace pcb {
// I-block: sequence number N(S), and whether more blocks of the chain follow.
inline constexpr std::uint8_t SendNumber = 0x40;
inline constexpr std::uint8_t More = 0x20;
// R-block: the number N(R) of the I-block expected next, and what was wrong with the last one.
inline constexpr std::uint8_t Receipt = 0x80;
inline constexpr std::uint8_t ReceiveNumber = 0x10;
inline constexpr std::uint8_t ErrorMask = 0x0F;
// S-block: requests, and the responses to them with the bit Response.
inline constexpr std::uint8_t Resynch = 0xC0;
inline constexpr std::uint8_t InformationSize = 0xC1;  // IFS
inline constexpr std::uint8_t Abort = 0xC2;
inline constexpr std::uint8_t WaitingTime = 0xC3;  // WTX
inline constexpr std::uint8_t Response = 0x20;
}  // namespace pcb

// What an R-block says of the block received last.
enum class BlockError : std::uint8_t { None = 0, Check = 1, Other = 2 };

enum class BlockKind { Information, Receipt, Supervisory };

struct Block {
  std::uint8_t Nad = 0;
  std::uint8_t Pcb = 0;
  Bytes Information{};

  [[nodiscard]] BlockKind Kind() const;
  // N(S) of an I-block, N(R) of an R-block.
  [[nodiscard]] bool Number() const;
  [[nodiscard]] bool HasMore() const { return (Pcb & pcb::More) != 0; }
  [[nodiscard]] bool ReportsError() const { return (Pcb & pcb::ErrorMask) != 0; }
};

inline constexpr std::size_t LargestInformation = 254;  // bytes; a LEN of 255 is reserved

// The bytes of a block. Its information must not be longer than LargestInformation.
[[nodiscard]] Bytes Encode(const Block& block);

enum class Framing { Complete, NeedMore, Invalid };

struct FramedBlock {
  Framing State = Framing::NeedMore;
  Block Found{};                        // Complete
  BlockError Error = BlockError::None;  // Invalid: Check for a wrong LRC, else Other
};

// The block that the received bytes begin with. NeedMore while they may still become one; Invalid
// as soon as they cannot: another sender than terminal and card, a PCB that the standard does not
// give a meaning, a length that does not go with it, a wrong LRC. Bytes behind a complete block
// take no part.
[[nodiscard]] FramedBlock ReadBlock(ByteView received);

}  // namespace ctapi
