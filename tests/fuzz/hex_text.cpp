#include "text/hex_text.h"

#include "fuzz/byte_source.h"
#include "fuzz/fuzz_input.h"

// Input: three bytes (positions and a length), then a text, taken both as bytes and as it stands.

namespace kartocheck {
namespace {

// The same, once more and simply, for whole texts of bytes.
void CheckBytes(QByteArrayView bytes, qsizetype first, qsizetype last) {
  const QString text = hex::Encode(bytes);
  fuzz::Require(text.size() == 2 * bytes.size(), "two digits a byte");
  fuzz::Require(hex::Decode(text) == bytes.toByteArray(), "decoding gives the bytes back");
  int sum = 0;
  for (qsizetype position = first; position >= 1 && position <= last; position += 2) {
    if (position % 2 == 1 && position / 2 < bytes.size()) sum ^= bytes[position / 2] & 0xFF;
  }
  if (first % 2 == 1) fuzz::Require(hex::Xor(text, first, last) == sum, "the XOR of the bytes");
  for (qsizetype i = 0; i < bytes.size() + 2; ++i) {
    const int expected = i < bytes.size() ? bytes[i] & 0xFF : 0;
    fuzz::Require(hex::ByteAt(text, 2 * i + 1) == expected, "every byte at its position");
  }
}

// Any text at all: pieces lie inside, numbers fit.
void CheckText(QStringView text, qsizetype position, qsizetype length) {
  const QStringView piece = hex::Mid(text, position, length);
  fuzz::Require(piece.size() <= text.size() && piece.size() <= qMax<qsizetype>(length, 0),
                "a piece is no longer than asked");
  fuzz::Require(piece.isEmpty() || text.mid(position - 1).startsWith(piece), "a piece of the text");
  fuzz::Require(hex::Right(text, length).size() <= text.size(), "an end of the text");
  fuzz::Require(hex::NumberAt(text, position, 1) <= 0xFF, "one byte fits one byte");
  (void)hex::NumberAt(text, position, 4);
  (void)hex::Xor(text, position, position + length);
  const auto value = hex::Value(text);
  fuzz::Require(!value || hex::Value(QString(u'0' + text.toString())) == value,
                "leading zeros do not count");
}

}  // namespace
}  // namespace kartocheck

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::fuzz::ByteSource source(data, size);
  const int first = source.Byte() - 20;
  const int last = source.Byte() - 20;
  const int length = source.Byte() - 20;
  const auto rest = source.Rest();
  const QByteArrayView bytes(rest.data(), static_cast<qsizetype>(rest.size()));
  kartocheck::CheckBytes(bytes, first, last);
  kartocheck::CheckText(QString::fromLatin1(bytes), first, length);
  return 0;
}
