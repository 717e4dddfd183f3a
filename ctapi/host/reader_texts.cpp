#include "host/reader_texts.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "protocol/ct_bcs.h"

namespace ctapi::host {

namespace {

constexpr std::size_t FieldLength = 5;

// Codes of makers and products by which terminal models are told apart.
constexpr std::array<std::string_view, 7> CodesOfTerminals{"DENRV", "NVRHC", "PKT-G", "PKT-S",
                                                           "PKTO ", "PKTD ", "PKTDM"};

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
  std::string field(text.substr(0, FieldLength));
  for (char& c : field) {
    if (c < ' ' || c > '~') c = Replacement;
  }
  field.resize(FieldLength, ' ');
  std::string upper = field;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  if (std::find(CodesOfTerminals.begin(), CodesOfTerminals.end(), upper) !=
      CodesOfTerminals.end()) {
    field.back() = '*';
  }
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
  Bytes object{ct_bcs::ObjectManufacturer, 3 * FieldLength};
  for (const std::string& field : {maker, product, version}) {
    object.insert(object.end(), field.begin(), field.end());
  }
  return object;
}

}  // namespace ctapi::host
