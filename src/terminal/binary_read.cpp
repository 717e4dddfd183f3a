#include "terminal/binary_read.h"

#include <algorithm>
#include <array>

#include "protocol/iso7816.h"
#include "text/bytes.h"

namespace kartocheck {

namespace {

namespace iso7816 = ctapi::iso7816;

// Data and status word of a piece fit one block of 254 bytes on the line (ISO 7816-3, T=1).
constexpr int PieceSize = 0xFC;
constexpr int LargestSingleRead = 0xFD;

CtAnswer ReadBinary(CtSession& link, int p1p2, int le) {
  constexpr std::uint8_t InterindustryClass = 0x00;
  const std::array<std::uint8_t, 5> command{
      InterindustryClass, iso7816::InsReadBinary, static_cast<std::uint8_t>(p1p2 >> 8),
      static_cast<std::uint8_t>(p1p2 & 0xFF), static_cast<std::uint8_t>(le)};
  return link.CtExchange(command, Unit::Card);
}

BinaryRead Refused(const CtAnswer& answer) {
  const bool isDenied = answer.Is(sw::SecurityStatus);
  return {.result = isDenied ? BinaryRead::Result::AccessDenied : BinaryRead::Result::Failed,
          .bytes = {},
          .statusWord = answer.StatusWord()};
}

}  // namespace

BinaryRead CtExchangeFile(CtSession& link, int offset, int count) {
  BinaryRead read;
  const int pieceSize = count <= LargestSingleRead ? count : PieceSize;
  while (read.bytes.size() < count) {
    const int position = offset + static_cast<int>(read.bytes.size());
    const int wanted = std::min(pieceSize, count - static_cast<int>(read.bytes.size()));
    if (position >= iso7816::OffsetLimit) return {};

    const CtAnswer answer = ReadBinary(link, position, wanted);
    if (!answer.Is(sw::Ok) && !answer.Is(sw::EndOfFile)) return Refused(answer);
    read.statusWord = answer.StatusWord();
    const QByteArrayView piece = bytes::Mid(answer.Data(), 0, wanted);
    read.bytes += piece;
    const bool isFileAtItsEnd = answer.Is(sw::EndOfFile) && piece.size() < wanted;
    if (piece.isEmpty() || isFileAtItsEnd) break;
  }
  read.result = BinaryRead::Result::Success;
  return read;
}

BinaryRead CtExchangeRecord(CtSession& link, std::uint16_t p1p2, int bufferSize) {
  BinaryRead read;
  int position = p1p2;
  qsizetype received = 0;
  do {
    const CtAnswer answer = ReadBinary(link, position, iso7816::LeMaximum);
    if (!answer.Succeeded()) return {};
    const QByteArrayView piece = answer.Data();
    const bool isData = answer.Is(sw::Ok) || answer.Is(sw::OkProcessorCard) ||
                        (answer.Is(sw::EndOfFile) && !piece.isEmpty());
    if (!isData) {
      // Behind a first piece another status word only tells that the file ended there.
      if (read.bytes.isEmpty()) return Refused(answer);
      break;
    }
    // An answer longer than the whole buffer is none of this file's.
    if (read.bytes.isEmpty() && piece.size() > bufferSize) return {};
    read.statusWord = answer.StatusWord();
    received = piece.size();
    read.bytes += bytes::Mid(piece, 0, bufferSize - read.bytes.size());
    position = static_cast<int>(read.bytes.size());
  } while (received == iso7816::BytesOfLeMaximum && read.bytes.size() < bufferSize);
  read.result = BinaryRead::Result::Success;
  return read;
}

}  // namespace kartocheck
