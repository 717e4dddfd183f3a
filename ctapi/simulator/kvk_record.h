#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/bytes.h"

// The data of a KVK as a terminal delivers them.
namespace ctapi {

// The elements of a KVK by name, as UTF-8 text; the widths are those of the card and of the fixed
// format, in characters. An element without a value is not delivered, one with an empty text is
// delivered with length 0.
struct KvkElements {
  std::optional<std::string> InsurerName{};       // tag 80, 28
  std::optional<std::string> InsurerNumber{};     // tag 81, 7 digits
  std::optional<std::string> Vknr{};              // tag 8F, 5 digits
  std::optional<std::string> InsuredNumber{};     // tag 82, 12 digits
  std::optional<std::string> InsuredStatus{};     // tag 83, 4 digits
  std::optional<std::string> StatusSupplement{};  // tag 90, 3
  std::optional<std::string> Title{};             // tag 84, 15
  std::optional<std::string> FirstName{};         // tag 85, 28
  std::optional<std::string> NameAffix{};         // tag 86, 15
  std::optional<std::string> FamilyName{};        // tag 87, 28
  std::optional<std::string> BirthDate{};         // tag 88, 8 digits TTMMJJJJ
  std::optional<std::string> Street{};            // tag 89, 28
  std::optional<std::string> CountryCode{};       // tag 8A, 3
  std::optional<std::string> PostalCode{};        // tag 8B, 7
  std::optional<std::string> Town{};              // tag 8C, 23
  std::optional<std::string> ValidUntil{};        // tag 8D, 4 digits MMJJ
};

struct KvkElementKind {
  std::string_view Name;  // as in a scenario
  std::uint8_t Tag;
  std::size_t Width;
  std::optional<std::string> KvkElements::* Value;
};

// In the order of the card.
inline constexpr std::array<KvkElementKind, 16> KvkElementKinds{{
    {"insurerName", 0x80, 28, &KvkElements::InsurerName},
    {"insurerNumber", 0x81, 7, &KvkElements::InsurerNumber},
    {"vknr", 0x8F, 5, &KvkElements::Vknr},
    {"insuredNumber", 0x82, 12, &KvkElements::InsuredNumber},
    {"insuredStatus", 0x83, 4, &KvkElements::InsuredStatus},
    {"statusSupplement", 0x90, 3, &KvkElements::StatusSupplement},
    {"title", 0x84, 15, &KvkElements::Title},
    {"firstName", 0x85, 28, &KvkElements::FirstName},
    {"nameAffix", 0x86, 15, &KvkElements::NameAffix},
    {"familyName", 0x87, 28, &KvkElements::FamilyName},
    {"birthDate", 0x88, 8, &KvkElements::BirthDate},
    {"street", 0x89, 28, &KvkElements::Street},
    {"countryCode", 0x8A, 3, &KvkElements::CountryCode},
    {"postalCode", 0x8B, 7, &KvkElements::PostalCode},
    {"town", 0x8C, 23, &KvkElements::Town},
    {"validUntil", 0x8D, 4, &KvkElements::ValidUntil},
}};

enum class KvkForm {
  Automatic,  // the shorter of 60 and 6081
  Short60,    // length in one byte, at most 127
  Long6081,   // length in one byte
  Long6082,   // length in two bytes
  Fixed219,   // fixed format: the 17 elements of the card
  Fixed231,   // and the supplement, approval number of 3 characters
  Fixed255,   // and the supplement, approval number of 27 characters
};

// How a check byte is written: as the record demands, not at all, as an element of length 0, or
// with a value of the caller's.
struct CheckByte {
  enum class Kind { Computed, Absent, Empty, Given };
  Kind How = Kind::Computed;
  std::uint8_t Value = 0;
};

// Appends the check object; the computed check is the XOR of everything before its value byte.
void AppendCheckObject(Bytes& bytes, std::uint8_t tag, CheckByte check);

// What a mobile terminal appends to a record that it stores (tags 91, 92, 93).
struct KvkSupplement {
  std::optional<std::string> ReadingDate{};     // 8 digits TTMMJJJJ
  std::optional<std::string> ApprovalNumber{};  // 3 or 27 characters
  CheckByte Check{};
};

// One record. Throws std::invalid_argument where the elements do not fit the form: a text that
// DIN 66003 cannot write, a template longer than its length field, a text wider than its fixed
// field, a supplement for Fixed219.
[[nodiscard]] Bytes BuildKvk(const KvkElements& elements, KvkForm form = KvkForm::Automatic,
                             CheckByte check = {},
                             const std::optional<KvkSupplement>& supplement = std::nullopt);

// UTF-8 text in the German variant of ISO 646 (DIN 66003), one byte a character. Throws
// std::invalid_argument for a character that it does not have.
[[nodiscard]] Bytes Din66003(std::string_view text);

}  // namespace ctapi
