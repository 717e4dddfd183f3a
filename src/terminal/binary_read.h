#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

#include "terminal/ct_session.h"

namespace kartocheck {

// Bytes of a file of the card, or why there are none.
struct BinaryRead {
  enum class Result {
    Success,
    Failed,        // the exchange failed, the status word is none of success, or nothing was sent
    AccessDenied,  // the card refuses for lack of access rights (6982)
  };

  Result result = Result::Failed;
  QByteArray bytes;                               // empty without Success
  std::optional<ctapi::StatusWord> statusWord{};  // the last one; none: the exchange itself failed

  [[nodiscard]] bool Succeeded() const { return result == Result::Success; }
};

// READ BINARY of the selected file: `count` bytes (0 to 65,535) from `offset` (0 to 65,535). Up to
// 253 bytes are asked for at once, more in pieces. "9000" and "6282" are success. A short
// answer with "6282" is the end of the file: fewer bytes than asked are success as well, and
// callers that need all of them look at their number. An offset of 32,768 or more cannot be
// expressed: the read fails and nothing is sent.
[[nodiscard]] BinaryRead CtExchangeFile(CtSession& link, int offset, int count);

// READ BINARY of a mobile terminal's stored file: the file is chosen by P1 P2 with a short file
// identifier (8C00: identifier 0C, offset 0), all that fits `bufferSize` bytes is read. An answer
// may be longer than 256 bytes; one of exactly 256 is continued. "9000", "9001", and "6282" with
// data, are success.
[[nodiscard]] BinaryRead CtExchangeRecord(CtSession& link, std::uint16_t p1p2, int bufferSize);

}  // namespace kartocheck
