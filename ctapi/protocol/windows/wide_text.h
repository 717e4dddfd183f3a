#pragma once

#include <string>
#include <string_view>

// Texts of this project are UTF-8, those of the system UTF-16. What is no text in the one becomes
// the replacement character of the other.
namespace ctapi {

[[nodiscard]] std::wstring WideText(std::string_view utf8);
[[nodiscard]] std::string Utf8Text(std::wstring_view wide);

}  // namespace ctapi
