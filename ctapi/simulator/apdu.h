#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "simulator/bytes.h"

namespace ctapi {

// Status words of ISO 7816-4 and CT-BCS.
namespace sw {
inline constexpr std::uint16_t Ok = 0x9000;
inline constexpr std::uint16_t OkProcessorCard = 0x9001;  // CT-BCS: an asynchronous card answered
inline constexpr std::uint16_t MobileTerminal = 0x9500;   // RESET CT: keeps stored records
inline constexpr std::uint16_t MobileExtended = 0x9501;   // RESET CT: keeps extended records
inline constexpr std::uint16_t NothingPresented =
    0x6200;  // CT-BCS: no card within the waiting time
inline constexpr std::uint16_t CardAlreadyPresent = 0x6201;
inline constexpr std::uint16_t EndOfFile = 0x6282;
inline constexpr std::uint16_t Deactivated = 0x6283;
inline constexpr std::uint16_t ResetFailed = 0x6400;
inline constexpr std::uint16_t ReadFailed = 0x6501;  // the health professional card is not released
inline constexpr std::uint16_t WrongLength = 0x6700;
inline constexpr std::uint16_t NotAllowed = 0x6900;
inline constexpr std::uint16_t NoTransparentFile = 0x6981;
inline constexpr std::uint16_t SecurityStatus = 0x6982;
inline constexpr std::uint16_t ConditionsOfUse = 0x6985;
inline constexpr std::uint16_t NoFileSelected = 0x6986;
inline constexpr std::uint16_t WrongParameters = 0x6A00;
inline constexpr std::uint16_t NotFound = 0x6A82;
inline constexpr std::uint16_t RecordNotFound = 0x6A83;
inline constexpr std::uint16_t IncorrectP1P2 = 0x6A86;
inline constexpr std::uint16_t WrongOffset = 0x6B00;
inline constexpr std::uint16_t UnknownInstruction = 0x6D00;
inline constexpr std::uint16_t UnknownClass = 0x6E00;
inline constexpr std::uint16_t NoDiagnosis = 0x6F00;
}  // namespace sw

// A command in short form (ISO 7816-3, cases 1 to 4): header, data, expected length.
struct Command {
  std::uint8_t Cla = 0;
  std::uint8_t Ins = 0;
  std::uint8_t P1 = 0;
  std::uint8_t P2 = 0;
  Bytes Data{};
  std::optional<int> Le{};  // 1 to 256; an Le byte of 00 is 256

  // P1 and P2 as one number.
  [[nodiscard]] std::uint16_t Parameters() const {
    return static_cast<std::uint16_t>((P1 << 8) | P2);
  }
};

// Nothing when the bytes are no command, that is when Lc and the length do not agree.
[[nodiscard]] std::optional<Command> ParseCommand(ByteView bytes);

// A response of a status word alone, or of data and status word.
[[nodiscard]] Bytes Answer(std::uint16_t statusWord);
[[nodiscard]] Bytes Answer(ByteView data, std::uint16_t statusWord);

// What READ BINARY tells of a file's bytes from an offset on: 6282 behind fewer bytes than
// explicitly asked for, 6B00 past the end.
[[nodiscard]] Bytes AnswerPiece(ByteView file, std::size_t offset, int le);

// Application identifiers (ISO 7816-5) of the insurance cards.
namespace aid {
using namespace std::string_view_literals;
inline constexpr std::string_view Kvk = "\xD2\x76\x00\x00\x01\x01"sv;
inline constexpr std::string_view KvkOld = "\xD2\x80\x00\x00\x01\x01"sv;
inline constexpr std::string_view Hca = "\xD2\x76\x00\x00\x01\x02"sv;
inline constexpr std::string_view EgkRoot = "\xD2\x76\x00\x01\x44\x80\x00"sv;
}  // namespace aid

// Instructions of ISO 7816-4.
namespace ins {
inline constexpr std::uint8_t EraseBinary = 0x0E;
inline constexpr std::uint8_t Select = 0xA4;
inline constexpr std::uint8_t ReadBinary = 0xB0;
inline constexpr std::uint8_t ReadRecord = 0xB2;
}  // namespace ins

// SELECT with P1 04: by application identifier.
[[nodiscard]] bool SelectsApplication(const Command& command);
[[nodiscard]] bool Names(const Command& command, std::string_view applicationId);

}  // namespace ctapi
