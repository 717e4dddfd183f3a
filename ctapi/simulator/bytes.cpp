#include "simulator/bytes.h"

#include <numeric>
#include <stdexcept>

namespace ctapi {

namespace {

constexpr int NoDigit = -1;

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return NoDigit;
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

ByteView AsBytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

std::optional<Bytes> BytesFromHex(std::string_view text) {
  Bytes bytes;
  int high = NoDigit;
  for (const char c : text) {
    if (high == NoDigit && IsBlank(c)) continue;
    const int digit = DigitOf(c);
    if (digit == NoDigit) return std::nullopt;
    if (high == NoDigit) {
      high = digit;
    } else {
      bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
      high = NoDigit;
    }
  }
  if (high != NoDigit) return std::nullopt;
  return bytes;
}

std::uint8_t XorOf(ByteView bytes) {
  return std::accumulate(
      bytes.begin(), bytes.end(), std::uint8_t{0},
      [](std::uint8_t sum, std::uint8_t byte) { return static_cast<std::uint8_t>(sum ^ byte); });
}

void Append(Bytes& bytes, ByteView more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void Append(Bytes& bytes, std::string_view more) {
  Append(bytes, AsBytes(more));
}

void AppendObject(Bytes& bytes, std::uint8_t tag, ByteView value) {
  if (value.size() > 0xFF) throw std::invalid_argument("a value has more than 255 bytes");
  bytes.push_back(tag);
  bytes.push_back(static_cast<std::uint8_t>(value.size()));
  Append(bytes, value);
}

void AppendObject(Bytes& bytes, std::uint8_t tag, std::string_view value) {
  AppendObject(bytes, tag, AsBytes(value));
}

void AppendBigEndian(Bytes& bytes, std::size_t value) {
  bytes.push_back(static_cast<std::uint8_t>((value >> 8) & 0xFF));
  bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

}  // namespace ctapi
