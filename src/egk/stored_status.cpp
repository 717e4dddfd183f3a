#include "egk/stored_status.h"

#include <optional>

#include "egk/egk_steps.h"
#include "text/code_page.h"
#include "text/hex_text.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

constexpr qsizetype StatusBytes = 25;
constexpr qsizetype DateCharacters = 8;

// Bytes of the status object with tag and length, and of the approval number, that a terminal
// delivers at most, without and with the extended record.
constexpr qsizetype PlainLength = 27;
constexpr qsizetype ExtendedLength = 38;

// A data object as it was found: hexadecimal text, empty where it was not.
struct FoundObject {
  QStringView tlv;  // with tag and length
  QStringView value;

  [[nodiscard]] bool IsThere() const { return !tlv.isEmpty(); }
};

struct FoundObjects {
  FoundObject status;
  FoundObject date;
  FoundObject approval;
  FoundObject checksum;
  std::optional<quint8> sum;  // XOR of all bytes before the checksum's value
  QStringView rest;           // behind the last of these objects

  // Null for any other tag.
  [[nodiscard]] FoundObject* OfTag(QStringView tag) {
    static const StatusDescriptor Expected;
    if (tag == Expected.status.tag) return &status;
    if (tag == Expected.readingDate.tag) return &date;
    if (tag == Expected.approval.tag) return &approval;
    return tag == Expected.checksum.tag ? &checksum : nullptr;
  }

  // The terminal stored neither, which is no fault of the data: what else there is, is filler.
  [[nodiscard]] bool LackDateAndApproval() const {
    const bool isFiller = rest.count(u'0') == rest.size() || rest.count(u'F') == rest.size();
    return !date.IsThere() && !approval.IsThere() && isFiller;
  }
};

FoundObjects FindObjects(QStringView data) {
  FoundObjects found;
  qsizetype position = 1;
  if (found.OfTag(hex::Mid(data, 1, 2)) != &found.status) {
    const QStringView raw = hex::Mid(data, 1, 2 * StatusBytes);
    found.status = {.tlv = raw, .value = raw};
    position += raw.size();
  }
  while (position < data.size()) {
    FoundObject* const object = found.OfTag(hex::Mid(data, position, 2));
    if (object == nullptr) break;
    const qsizetype length = 2 * qsizetype{hex::ByteAt(data, position + 2)};
    const qsizetype valuePosition = position + 4;
    const QStringView value = hex::Mid(data, valuePosition, length);
    const QStringView tlv = hex::Mid(data, position, 4 + length);
    if (value.size() < length || tlv.size() < 4) break;
    *object = {.tlv = tlv, .value = value};
    if (object == &found.checksum) found.sum = hex::Xor(data, 1, valuePosition - 2);
    position = valuePosition + length;
  }
  found.rest = hex::From(data, position);
  return found;
}

QString TextOfHex(QStringView value) {
  return TextOf(hex::Decode(value).value_or(QByteArray()));
}

// A sign or a blank, which a number may begin with, is no part of a date.
bool IsDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

// TT.MM.JJJJ of a date in either order, told apart by the month's place; empty where it is neither.
QString ConvertedDate(const QString& date) {
  if (date.size() != DateCharacters || !IsDigit(date[4]) || !IsDigit(date[5])) return {};
  const bool isYearLast = date.mid(4, 2).toInt() > 12;
  if (isYearLast) return date.mid(0, 2) + u'.' + date.mid(2, 2) + u'.' + date.mid(4, 4);
  return date.mid(6, 2) + u'.' + date.mid(4, 2) + u'.' + date.mid(0, 4);
}

void TellOverlong(const EgkTarget& target, QStringView what) {
  TellEgk(target, Lines({what, u"Es werden nicht alle Daten angezeigt!"}));
}

void TakeOverChecksum(const FoundObjects& found, const EgkTarget& target) {
  target.egk.stored.checksumText = found.checksum.value.toString();
  if (!found.checksum.IsThere() && found.LackDateAndApproval()) return;
  if (found.sum && hex::Value(found.checksum.value) == *found.sum) return;
  target.dialogs.Tell(
      Icon::Critical, Dialogs::Title.toString(),
      QStringLiteral("Die Prüfsumme der gelesenen eGK VSD Zusatzdaten ist korrupt!!! "));
}

void TakeOverDate(const QString& date, const EgkTarget& target) {
  StatusDescriptor& stored = target.egk.stored;
  stored.storedDate = date.left(DateCharacters);
  stored.convertedDate = ConvertedDate(stored.storedDate);
  if (stored.convertedDate.isEmpty()) {
    TellEgk(target, QStringLiteral("Unbekanntes Format des Einlesedatums festgestellt!"));
  }
}

void TakeOverApproval(const QString& approval, qsizetype expected, const EgkTarget& target) {
  StatusDescriptor& stored = target.egk.stored;
  stored.approvalNumber = approval.left(expected).trimmed();
  if (stored.approvalNumber.isEmpty()) {
    TellEgk(target, QStringLiteral("Unbekanntes Format der Zulassungsnummer festgestellt!"));
  } else if (stored.approvalNumber.startsWith(u';')) {
    TellEgk(target, QStringLiteral("Die Zulassungsnummer konnte nicht ermittelt werden!"));
  }
}

}  // namespace

bool LacksDateAndApproval(QStringView data) {
  return FindObjects(data).LackDateAndApproval();
}

void ReadStoredStatus(QStringView data, const EgkTarget& target) {
  StatusDescriptor& stored = target.egk.stored;
  const qsizetype expected = target.info.Reset9501 ? ExtendedLength : PlainLength;
  const FoundObjects found = FindObjects(data);
  stored.status.tlv = found.status.tlv.toString();
  stored.readingDate.tlv = found.date.tlv.toString();
  stored.approval.tlv = found.approval.tlv.toString();
  stored.checksum.tlv = found.checksum.tlv.toString();

  const QString date = TextOfHex(found.date.value);
  const QString approval = TextOfHex(found.approval.value);
  TakeOverChecksum(found, target);
  if (!found.LackDateAndApproval()) {
    TakeOverDate(date, target);
    TakeOverApproval(approval, expected, target);
  }

  stored.statusText = found.status.value.left(2 * StatusBytes).toString();
  if (found.status.tlv.size() / 2 > expected) {
    TellOverlong(target, u"Größere Länge der VSD Statusdaten festgestellt!");
  }
  if (date.size() > DateCharacters) {
    TellOverlong(target, u"Größere Länge des Einlesedatums festgestellt!");
  }
  if (approval.size() > expected) {
    TellOverlong(target, u"Größere Länge der Zulassungsnummer festgestellt!");
  }
}

}  // namespace kartocheck
