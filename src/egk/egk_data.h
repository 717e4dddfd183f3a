#pragma once

#include <QString>

#include <array>
#include <cstddef>

#include "egk/vsd_kind.h"

namespace kartocheck {

// A row of a field table: the element's name, at times with a prefix or a suffix, and its text.
struct VsdField {
  QString name;
  QString value;

  [[nodiscard]] bool IsEmpty() const { return name.isEmpty() && value.isEmpty(); }
  friend bool operator==(const VsdField&, const VsdField&) = default;
};

// The rows of a kind from 0 on; what lies behind the kind's last row stays empty.
inline constexpr PerVsdKind<int> FieldRowCount({22, 21, 4});
inline constexpr int FieldTableRows = 60;
using FieldTable = std::array<VsdField, FieldTableRows>;

// What is kept of one VSD document of a slot.
struct VsdDocument {
  QString xmlText;         // as decompressed; once parsed for a validation, the root element's XML
  QString validationText;  // lines with CR LF; empty before the first decompression
  bool notValidated = true;
  FieldTable fields;

  [[nodiscard]] bool IsEmpty() const;
};

// A data object of a mobile terminal's status record: the tag and the length to expect, two
// hexadecimal digits each, and the object as it was found (hexadecimal text with tag and length;
// empty where it was not).
struct StatusObject {
  QString tag;
  QString length;
  QString tlv{};
};

// The status data that a mobile terminal stores with the documents. The texts start empty on every
// read.
struct StatusDescriptor {
  StatusObject status{QStringLiteral("A0"), QStringLiteral("19")};
  QString statusText;  // EF.StatusVD of the card, 25 bytes as hexadecimal text

  StatusObject readingDate{QStringLiteral("91"), QStringLiteral("08")};
  QString storedDate;     // as stored: TTMMJJJJ or JJJJMMTT
  QString convertedDate;  // TT.MM.JJJJ; empty where the form is unknown

  StatusObject approval{QStringLiteral("92"), QStringLiteral("1B")};
  QString approvalNumber;  // maker;product;version, trimmed

  StatusObject checksum{QStringLiteral("93"), QStringLiteral("01")};
  QString checksumText;  // two hexadecimal digits

  [[nodiscard]] bool IsEmpty() const;
};

// What the eGK reads keep of a slot besides the InsuredData row.
struct EgkData {
  QString iccsn;       // hexadecimal text, 20 digits on a genuine card
  QString statusText;  // EF.StatusVD of the card as hexadecimal text
  PerVsdKind<VsdDocument> documents;
  StatusDescriptor stored;  // mobile terminals only

  // Nothing was kept: no element and no document.
  [[nodiscard]] bool IsEmpty() const { return iccsn.isEmpty() && !HoldsData(); }
  // The serial number tells of the card, not of the insured person: alone it is no data.
  [[nodiscard]] bool HoldsData() const;
  void Clear() { *this = EgkData(); }
};

}  // namespace kartocheck
