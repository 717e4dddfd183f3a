#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>

namespace kartocheck {

// The elements of the insured person's data, in the order of the KVK. eGK data are mapped onto the
// same elements.
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
  Checksum,     // two hexadecimal digits
  ReadingDate,  // this and the next two: records of mobile terminals only
  ApprovalNumber,
  ChecksumSupplement,  // two hexadecimal digits
};

inline constexpr int ElementCount = 20;
// Elements that a card delivers; the three behind them follow in a mobile terminal's record.
inline constexpr int CardElementCount = 17;

// How the fixed format holds a field. Leading blanks are skipped in text and digits, never in
// binary, where 20 can be a checksum.
enum class FieldKind { Text = 0, Digits = 1, Binary = 2 };

struct ElementDescription {
  quint8 tag;  // of the KVK's ASN.1 template
  int width;   // bytes in the fixed format
  FieldKind kind;
  QStringView label;  // in the data frame; empty where the element is not shown
};

inline constexpr std::array<ElementDescription, ElementCount> ElementTable{{
    {0x80, 28, FieldKind::Text, u"Krankenkassenname:"},
    {0x81, 7, FieldKind::Digits, u"Krankenkassennummer:"},
    {0x82, 12, FieldKind::Digits, u"Versichertennummer:"},
    {0x8F, 5, FieldKind::Digits, u"VKNR:"},
    {0x83, 4, FieldKind::Digits, u"Versichertenstatus:"},
    {0x90, 3, FieldKind::Text, u"Statusergänzung:"},
    {0x84, 15, FieldKind::Text, u"Titel:"},
    {0x85, 28, FieldKind::Text, u"Vorname:"},
    {0x86, 15, FieldKind::Text, u"Namenszusatz:"},
    {0x87, 28, FieldKind::Text, u"Familienname:"},
    {0x88, 8, FieldKind::Digits, u"Geburtsdatum:"},
    {0x89, 28, FieldKind::Text, u"Straße:"},
    {0x8A, 3, FieldKind::Text, u"Wohnsitzländercode:"},
    {0x8B, 7, FieldKind::Text, u"Postleitzahl:"},
    {0x8C, 23, FieldKind::Text, u"Ortsname:"},
    {0x8D, 4, FieldKind::Digits, u"Gültigkeitsdatum:"},
    {0x8E, 1, FieldKind::Binary, u""},
    {0x91, 8, FieldKind::Digits, u"Einlesedatum:"},
    {0x92, 3, FieldKind::Digits, u"Zulassungsnummer:"},
    {0x93, 1, FieldKind::Binary, u""},
}};

// One text an element; empty where it was not delivered.
class InsuredData {
 public:
  QString& operator[](Element element) { return texts_.at(static_cast<std::size_t>(element)); }
  const QString& operator[](Element element) const {
    return texts_.at(static_cast<std::size_t>(element));
  }

  void Clear();
  [[nodiscard]] bool IsEmpty() const;

  // Takes over what a reader found: elements 0 to 16, from a mobile terminal's record all 20.
  void Store(const InsuredData& found, bool fromMobileTerminal);

 private:
  std::array<QString, ElementCount> texts_;
};

}  // namespace kartocheck
