#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "protocol/bytes.h"

namespace ctapi {

// The bytes of a text of hexadecimal digits, two a byte, in either case; blanks and line breaks
// between bytes are skipped. Nothing for any other character and for half a byte.
[[nodiscard]] std::optional<Bytes> BytesFromHex(std::string_view text);

[[nodiscard]] inline Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

// XOR of all bytes, 0 for none: the check of KVK records and of stored records.
[[nodiscard]] std::uint8_t XorOf(ByteView bytes);

void Append(Bytes& bytes, ByteView more);
void Append(Bytes& bytes, std::string_view more);

// A data object with a tag and a length of one byte each (ISO 7816-4, simple TLV). Throws
// std::invalid_argument for a value of more than 255 bytes.
void AppendObject(Bytes& bytes, std::uint8_t tag, ByteView value);
void AppendObject(Bytes& bytes, std::uint8_t tag, std::string_view value);

// The lower 16 bits, most significant byte first.
void AppendBigEndian(Bytes& bytes, std::size_t value);

}  // namespace ctapi
