#include "terminal/binary_read.h"

#include <algorithm>
#include <array>

#include "terminal/status_word.h"
#include "text/hex_text.h"

namespace kartocheck {

namespace {

// P1 P2 hold an offset in 15 bits; bit 8 of P1 announces a short file identifier (ISO 7816-4).
constexpr int OffsetLimit = 0x8000;
// Data and status word of a piece fit one block of 254 bytes on the line (ISO 7816-3, T=1).
constexpr int PieceSize = 0xFC;
constexpr int LargestSingleRead = 0xFD;
// Le 00 asks for up to 256 bytes.
constexpr int LeMaximum = 0x00;
constexpr int BytesOfLeMaximum = 256;

CtAnswer ReadBinary(CtSession& link, int p1p2, int le) {
  const std::array<char, 5> command{0x00, static_cast<char>(0xB0), static_cast<char>(p1p2 >> 8),
                                    static_cast<char>(p1p2 & 0xFF), static_cast<char>(le)};
  return link.CtExchange(hex::Encode(QByteArrayView(command)), Unit::Card);
}

QByteArray BytesOf(const CtAnswer& answer) {
  return hex::Decode(answer.Data()).value_or(QByteArray());
}

BinaryRead Refused(const CtAnswer& answer) {
  BinaryRead refused;
  refused.statusWord = answer.StatusWord().toString();
  if (answer.Is(status_word::SecurityStatus)) refused.result = BinaryRead::AccessDenied;
  return refused;
}

}  // namespace

BinaryRead CtExchangeFile(CtSession& link, int offset, int count) {
  BinaryRead read;
  const int pieceSize = count <= LargestSingleRead ? count : PieceSize;
  while (read.bytes.size() < count) {
    const int position = offset + static_cast<int>(read.bytes.size());
    const int wanted = std::min(pieceSize, count - static_cast<int>(read.bytes.size()));
    if (position >= OffsetLimit) return {};

    const CtAnswer answer = ReadBinary(link, position, wanted);
    if (!answer.Is(status_word::Ok) && !answer.Is(status_word::EndOfFile)) return Refused(answer);
    read.statusWord = answer.StatusWord().toString();
    const QByteArray piece = BytesOf(answer);
    if (piece.isEmpty()) break;
    read.bytes += piece.first(std::min<qsizetype>(piece.size(), wanted));
  }
  read.result = BinaryRead::Success;
  return read;
}

BinaryRead CtExchangeRecord(CtSession& link, quint16 p1p2, int bufferSize) {
  BinaryRead read;
  int position = p1p2;
  QByteArray piece;
  do {
    const CtAnswer answer = ReadBinary(link, position, LeMaximum);
    if (!answer.Succeeded()) return {};
    piece = BytesOf(answer);
    const bool isData = answer.Is(status_word::Ok) || answer.Is(status_word::OkProcessorCard) ||
                        (answer.Is(status_word::EndOfFile) && !piece.isEmpty());
    if (!isData) {
      // Behind a first piece another status word only tells that the file ended there.
      if (read.bytes.isEmpty()) return Refused(answer);
      break;
    }
    // An answer longer than the whole buffer is none of this file's.
    if (read.bytes.isEmpty() && piece.size() > bufferSize) return {};
    read.statusWord = answer.StatusWord().toString();
    read.bytes += piece.first(std::min<qsizetype>(piece.size(), bufferSize - read.bytes.size()));
    position = static_cast<int>(read.bytes.size());
  } while (piece.size() == BytesOfLeMaximum && read.bytes.size() < bufferSize);
  read.result = BinaryRead::Success;
  return read;
}

}  // namespace kartocheck
