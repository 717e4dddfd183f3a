#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "protocol/iso7816.h"
#include "protocol/status_word.h"
#include "simulator/bytes.h"

namespace ctapi {

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
[[nodiscard]] Bytes Answer(StatusWord statusWord);
[[nodiscard]] Bytes Answer(ByteView data, StatusWord statusWord);

// What READ BINARY tells of a file's bytes from an offset on: 6282 behind fewer bytes than
// explicitly asked for, 6B00 past the end.
[[nodiscard]] Bytes AnswerPiece(ByteView file, std::size_t offset, int le);

// SELECT with P1 04: by application identifier.
[[nodiscard]] bool SelectsApplication(const Command& command);
[[nodiscard]] bool Names(const Command& command, std::string_view applicationId);

}  // namespace ctapi
