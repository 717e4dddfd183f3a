#pragma once

#include <string_view>

namespace kartocheck {

// Whether a name, upper-cased, equals a name of upper-case ASCII letters. Documents hold
// ISO-8859-15 characters only, and none of those beyond ASCII becomes an ASCII letter in upper
// case.
[[nodiscard]] constexpr bool EqualsUpperCased(std::string_view name, std::string_view upperCase) {
  if (name.size() != upperCase.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char letter = name[i];
    const char upper =
        letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    if (upper != upperCase[i]) return false;
  }
  return true;
}

}  // namespace kartocheck
