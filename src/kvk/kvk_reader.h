#pragma once

#include <QString>
#include <QStringView>

#include "discovery/terminal_info.h"
#include "kvk/insured_data.h"
#include "platform/dialogs.h"
#include "platform/port.h"

namespace kartocheck {

// The records that a KVK read writes, and what it needs to know of the link.
struct KvkTarget {
  TerminalInfo& info;
  InsuredData& insured;
  Port port;  // of the link
  Dialogs& dialogs;
};

// How the data of a record are laid out, told by their first bytes.
enum class KvkForm { Template60, Template6081, Template6082, Fixed, Unknown };

// The output format that a terminal which delivers this form is set to.
[[nodiscard]] QStringView OutputFormatText(KvkForm form);

enum class KvkResult {
  Read,
  Refused,  // after an error message; the elements parsed before the failure stay stored
};

// Reads KVK data as a terminal hands them out: hexadecimal text of the record without status word,
// 106 to 518 characters, from a card or, when the terminal is flagged as mobile, from a stored
// record with its supplement.
[[nodiscard]] KvkResult ReadKvk(QStringView data, const KvkTarget& target);

// Splits the element list of a template, the supplement behind it included, and stores the result.
void ParseKvkAsn1(QStringView elements, const KvkTarget& target);

// Splits fixed-format data of 438, 462 or 510 characters and stores the result. Data of any other
// length are not parsed.
void ParseKvkFixed(QStringView data, const KvkTarget& target);

// The text of KVK bytes: ISO-8859-15, but for the seven German characters of DIN 66003.
[[nodiscard]] QString HexToKvkText(QStringView hexText);

// XOR of the bytes whose digits start at the 1-based positions first, first + 2, ... up to last.
[[nodiscard]] quint8 KvkXorChecksum(QStringView data, qsizetype first, qsizetype last);

}  // namespace kartocheck
