#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace ctapi {

// The German variant of ISO 646 (DIN 66003), in which a KVK holds its texts: the characters that
// stand at codes of ASCII's own ones.
struct GermanCharacter {
  std::uint8_t Code;
  char16_t Character;
  std::string_view Utf8;
};

inline constexpr auto GermanCharacters = std::to_array<GermanCharacter>({
    {0x5B, u'Ä', "Ä"},
    {0x5C, u'Ö', "Ö"},
    {0x5D, u'Ü', "Ü"},
    {0x7B, u'ä', "ä"},
    {0x7C, u'ö', "ö"},
    {0x7D, u'ü', "ü"},
    {0x7E, u'ß', "ß"},
});

}  // namespace ctapi
