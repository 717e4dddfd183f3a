#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <zlib.h>

namespace ctapi::test {

// The text of one whole gzip member; nothing for anything else, trailing bytes included.
inline std::optional<std::string> Inflate(std::span<const std::uint8_t> member) {
  constexpr int GzipOnly = MAX_WBITS + 16;
  z_stream stream{};
  if (inflateInit2(&stream, GzipOnly) != Z_OK) return std::nullopt;
  stream.next_in = const_cast<Bytef*>(member.data());
  stream.avail_in = static_cast<uInt>(member.size());
  std::string text;
  std::array<char, 512> piece{};
  int result = Z_OK;
  while (result == Z_OK) {
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    result = inflate(&stream, Z_NO_FLUSH);
    text.append(piece.data(), piece.size() - stream.avail_out);
  }
  const bool whole = result == Z_STREAM_END && stream.avail_in == 0;
  inflateEnd(&stream);
  if (!whole) return std::nullopt;
  return text;
}

}  // namespace ctapi::test
