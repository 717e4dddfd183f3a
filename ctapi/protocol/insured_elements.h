#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The elements of the insured person's data as a KVK holds them. An eGK's data are mapped onto the
// same elements, reports and scenarios name them by the same keys.
namespace ctapi {

// In the order of the fixed format. A new element takes an enumerator here and its row below.
enum class Element {
  InsurerName = 0,
  InsurerNumber,
  InsuredNumber,
  Vknr,
  InsuredStatus,
  StatusSupplement,
  Title,
  FirstName,
  NameAffix,
  LastName,
  BirthDate,
  Street,
  CountryCode,
  PostalCode,
  Town,
  ValidUntil,
  Checksum,
  ReadingDate,
  ApprovalNumber,
  ChecksumSupplement,
  End,  // behind the last element
};

inline constexpr int ElementCount = static_cast<int>(Element::End);

// Who delivers an element: every card, or only a mobile terminal with the record that it stored.
enum class ElementPart { Card, Supplement };

// What an element holds. In the fixed format leading blanks are skipped in text and digits, never
// in binary, where 20 can be a checksum.
enum class FieldKind { Text = 0, Digits = 1, Binary = 2 };

struct ElementDescription {
  Element Which;
  std::uint8_t Tag;  // of the KVK's ASN.1 template
  int Width;         // bytes in the fixed format; 0 where that has no field for it
  FieldKind Kind;    // binary elements are checksums
  ElementPart Part;
  std::u16string_view Label;     // in the data frame; empty where the element is not shown
  std::u16string_view EgkLabel;  // the same for an eGK; empty where it is the KVK's
  std::string_view Key;          // in the JSON report and in scenarios

  [[nodiscard]] constexpr bool IsChecksum() const { return Kind == FieldKind::Binary; }
  [[nodiscard]] constexpr bool IsShown() const { return !Label.empty(); }
};

inline constexpr auto ElementTable = [] {
  using enum Element;
  using enum ElementPart;
  using enum FieldKind;
  return std::array<ElementDescription, ElementCount>{{
      {InsurerName, 0x80, 28, Text, Card, u"Krankenkassenname:", u"", "insurerName"},
      {InsurerNumber, 0x81, 7, Digits, Card, u"Krankenkassennummer:", u"", "insurerNumber"},
      {InsuredNumber, 0x82, 12, Digits, Card, u"Versichertennummer:", u"", "insuredNumber"},
      {Vknr, 0x8F, 5, Digits, Card, u"VKNR:", u"WOP:", "vknr"},
      {InsuredStatus, 0x83, 4, Digits, Card, u"Versichertenstatus:", u"Versichertenstatus_RSA:",
       "status"},
      {StatusSupplement, 0x90, 3, Text, Card, u"Statusergänzung:", u"Rechtskreis:",
       "statusSupplement"},
      {Title, 0x84, 15, Text, Card, u"Titel:", u"", "title"},
      {FirstName, 0x85, 28, Text, Card, u"Vorname:", u"", "firstName"},
      {NameAffix, 0x86, 15, Text, Card, u"Namenszusatz:", u"", "nameAffix"},
      {LastName, 0x87, 28, Text, Card, u"Familienname:", u"", "lastName"},
      {BirthDate, 0x88, 8, Digits, Card, u"Geburtsdatum:", u"", "birthDate"},  // TTMMJJJJ
      {Street, 0x89, 28, Text, Card, u"Straße:", u"", "street"},
      {CountryCode, 0x8A, 3, Text, Card, u"Wohnsitzländercode:", u"", "countryCode"},
      {PostalCode, 0x8B, 7, Text, Card, u"Postleitzahl:", u"", "postalCode"},
      {Town, 0x8C, 23, Text, Card, u"Ortsname:", u"", "town"},
      {ValidUntil, 0x8D, 4, Digits, Card, u"Gültigkeitsdatum:", u"Gültigkeit (Ende):",
       "validUntil"},  // MMJJ
      {Checksum, 0x8E, 1, Binary, Card, u"", u"", "checksum"},
      {ReadingDate, 0x91, 8, Digits, Supplement, u"Einlesedatum:", u"", "readingDate"},  // TTMMJJJJ
      {ApprovalNumber, 0x92, 3, Digits, Supplement, u"Zulassungsnummer:", u"", "approvalNumber"},
      {ChecksumSupplement, 0x93, 1, Binary, Supplement, u"", u"", "checksumSupplement"},
  }};
}();

[[nodiscard]] constexpr const ElementDescription& DescriptionOf(Element element) {
  return ElementTable.at(static_cast<std::size_t>(element));
}

// The lengths of the fixed format, in bytes: what a card holds, and what a mobile terminal stores,
// with the short approval number or the long one.
inline constexpr int FixedCardLength = 219;
inline constexpr int FixedRecordLength = 231;
inline constexpr int FixedLongRecordLength = 255;
inline constexpr int LongApprovalNumberWidth = 27;

// The width of the element's field; inLongRecord: in the form of 255 bytes.
[[nodiscard]] constexpr int FieldWidth(const ElementDescription& element, bool inLongRecord) {
  const bool isLong = inLongRecord && element.Which == Element::ApprovalNumber;
  return isLong ? LongApprovalNumberWidth : element.Width;
}

namespace element_checks {

constexpr bool RowsStandAtTheirIndex() {
  for (std::size_t i = 0; i < ElementTable.size(); ++i) {
    if (ElementTable[i].Which != static_cast<Element>(i)) return false;
  }
  return true;
}

template <typename Fact>
constexpr bool IsUnique(Fact ElementDescription::* fact) {
  return std::all_of(ElementTable.begin(), ElementTable.end(), [fact](const auto& row) {
    return std::count_if(ElementTable.begin(), ElementTable.end(),
                         [fact, &row](const auto& other) { return other.*fact == row.*fact; }) == 1;
  });
}

constexpr bool EveryRowHasAKey() {
  return std::none_of(ElementTable.begin(), ElementTable.end(),
                      [](const auto& row) { return row.Key.empty(); });
}

// Of the fields of the parts up to the last one.
constexpr int FixedLength(ElementPart last, bool inLongRecord) {
  int length = 0;
  for (const ElementDescription& element : ElementTable) {
    if (element.Part <= last) length += FieldWidth(element, inLongRecord);
  }
  return length;
}

static_assert(RowsStandAtTheirIndex(), "an element without its row, or a row at another's place");
static_assert(IsUnique(&ElementDescription::Tag));
static_assert(EveryRowHasAKey() && IsUnique(&ElementDescription::Key));
static_assert(FixedLength(ElementPart::Card, false) == FixedCardLength);
static_assert(FixedLength(ElementPart::Supplement, false) == FixedRecordLength);
static_assert(FixedLength(ElementPart::Supplement, true) == FixedLongRecordLength);

}  // namespace element_checks

}  // namespace ctapi
