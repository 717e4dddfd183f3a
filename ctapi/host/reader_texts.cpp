#include "host/reader_texts.h"

#include <algorithm>
#include <cctype>

#include "protocol/ct_bcs.h"
#include "protocol/terminal_models.h"

namespace ctapi::host {

namespace {

// Takes the next word; words are parted by blanks and brackets.
std::string_view TakeWord(std::string_view& text) {
  constexpr std::string_view Separators = " ()[]";
  text.remove_prefix(std::min(text.find_first_not_of(Separators), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(Separators));
  text.remove_prefix(word.size());
  return word;
}

// Five printable characters, padded with blanks.
std::string Field(std::string_view text) {
  constexpr char Replacement = '?';
  std::string field(text.substr(0, ManufacturerCodeLength));
  for (char& c : field) {
    if (c < ' ' || c > '~') c = Replacement;
  }
  field.resize(ManufacturerCodeLength, ' ');
  std::string upper = field;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  if (IsTerminalCode(upper)) field.back() = '*';
  return field;
}

std::string VersionText(std::uint32_t version) {
  const auto byte = [version](int shift) { return std::to_string((version >> shift) & 0xFF); };
  return byte(24) + '.' + byte(16) + '.' + std::to_string(version & 0xFFFF);
}

}  // namespace

Bytes ManufacturerObject(std::string_view reader, std::optional<std::uint32_t> driverVersion) {
  const std::string maker = Field(TakeWord(reader));
  const std::string product = Field(TakeWord(reader));
  const std::string version = Field(driverVersion ? VersionText(*driverVersion) : "");
  Bytes object{ct_bcs::ObjectManufacturer, 3 * ManufacturerCodeLength};
  for (const std::string& field : {maker, product, version}) {
    object.insert(object.end(), field.begin(), field.end());
  }
  return object;
}

}  // namespace ctapi::host
