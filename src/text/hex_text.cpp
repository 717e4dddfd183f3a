#include "text/hex_text.h"

#include <array>
#include <cstddef>

namespace kartocheck::hex {

namespace {

constexpr int NoDigit = -1;

// By character code; a table, since every byte of every answer passes here.
constexpr auto DigitValues = [] {
  std::array<qint8, 128> values{};
  values.fill(NoDigit);
  for (int value = 0; value < 16; ++value) {
    const auto digit = static_cast<qint8>(value);
    values.at(static_cast<std::size_t>("0123456789ABCDEF"[value])) = digit;
    values.at(static_cast<std::size_t>("0123456789abcdef"[value])) = digit;
  }
  return values;
}();

constexpr int DigitValue(char16_t digit) {
  return digit < DigitValues.size() ? DigitValues[digit] : NoDigit;
}

// The byte whose digits are the characters at `index` (0-based) and behind it, or NoDigit.
int PairValue(QStringView text, qsizetype index) {
  if (index < 0 || index + 1 >= text.size()) return NoDigit;
  const int high = DigitValue(text[index].unicode());
  const int low = DigitValue(text[index + 1].unicode());
  return high == NoDigit || low == NoDigit ? NoDigit : high * 16 + low;
}

}  // namespace

QStringView Mid(QStringView text, qsizetype position, qsizetype length) {
  if (position < 1 || position > text.size() || length <= 0) return {};
  return text.mid(position - 1, length);
}

QStringView From(QStringView text, qsizetype position) {
  return Mid(text, position, text.size());
}

QStringView Right(QStringView text, qsizetype length) {
  return text.last(qBound<qsizetype>(0, length, text.size()));
}

quint8 ByteAt(QStringView text, qsizetype position) {
  const int value = PairValue(text, position - 1);
  return value == NoDigit ? quint8{0} : static_cast<quint8>(value);
}

quint32 NumberAt(QStringView text, qsizetype position, int bytes) {
  quint32 number = 0;
  for (int i = 0; i < bytes; ++i) number = number << 8 | ByteAt(text, position + 2 * i);
  return number;
}

quint8 Xor(QStringView text, qsizetype first, qsizetype last) {
  if (first < 1) return 0;
  const qsizetype end = qMin(last, text.size());
  int sum = 0;
  for (qsizetype position = first; position <= end; position += 2) {
    const int value = PairValue(text, position - 1);
    if (value != NoDigit) sum ^= value;
  }
  return static_cast<quint8>(sum);
}

std::optional<quint32> Value(QStringView digits) {
  if (digits.isEmpty()) return std::nullopt;
  quint64 value = 0;
  for (const QChar digit : digits) {
    const int digitValue = DigitValue(digit.unicode());
    if (digitValue == NoDigit) return std::nullopt;
    value = value * 16 + static_cast<quint64>(digitValue);
    if (value > 0xFFFFFFFFU) return std::nullopt;
  }
  return static_cast<quint32>(value);
}

QString Encode(QByteArrayView bytes) {
  constexpr char16_t Digits[] = u"0123456789ABCDEF";
  QString text(bytes.size() * 2, Qt::Uninitialized);
  QChar* out = text.data();
  for (const char byte : bytes) {
    const auto value = static_cast<quint8>(byte);
    *out++ = Digits[value >> 4];
    *out++ = Digits[value & 0x0F];
  }
  return text;
}

std::optional<QByteArray> Decode(QStringView text) {
  if (text.size() % 2 != 0) return std::nullopt;
  QByteArray bytes(text.size() / 2, Qt::Uninitialized);
  for (qsizetype i = 0; i < bytes.size(); ++i) {
    const int value = PairValue(text, 2 * i);
    if (value == NoDigit) return std::nullopt;
    bytes[i] = static_cast<char>(value);
  }
  return bytes;
}

}  // namespace kartocheck::hex
