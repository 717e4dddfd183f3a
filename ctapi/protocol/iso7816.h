#pragma once

#include <cstdint>
#include <string_view>

// What this field uses of ISO 7816: instructions and parameters of card commands (part 4), and the
// application identifiers of the insurance cards (part 5).
namespace ctapi::iso7816 {

inline constexpr std::uint8_t InsEraseBinary = 0x0E;
inline constexpr std::uint8_t InsSelect = 0xA4;
inline constexpr std::uint8_t InsReadBinary = 0xB0;
inline constexpr std::uint8_t InsReadRecord = 0xB2;
inline constexpr std::uint8_t InsGetResponse = 0xC0;

// SELECT: what P1 says that the data name.
inline constexpr std::uint8_t SelectByName = 0x04;

// READ BINARY: P1 P2 are an offset of 15 bits; bit 8 of P1 announces a short file identifier in its
// lower five bits instead.
inline constexpr std::uint8_t HasShortIdentifier = 0x80;
inline constexpr std::uint8_t ShortIdentifierBits = 0x1F;
inline constexpr int OffsetLimit = 0x8000;

// Le of one byte: 00 asks for as much as there is, up to 256 bytes.
inline constexpr std::uint8_t LeMaximum = 0x00;
inline constexpr int BytesOfLeMaximum = 256;

namespace aid {

using namespace std::string_view_literals;

inline constexpr std::string_view Kvk = "\xD2\x76\x00\x00\x01\x01"sv;
inline constexpr std::string_view KvkOld = "\xD2\x80\x00\x00\x01\x01"sv;
inline constexpr std::string_view Hca = "\xD2\x76\x00\x00\x01\x02"sv;
inline constexpr std::string_view EgkRoot = "\xD2\x76\x00\x01\x44\x80\x00"sv;

}  // namespace aid

}  // namespace ctapi::iso7816
