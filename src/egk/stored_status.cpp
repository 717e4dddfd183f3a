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

// The data objects that were found. Values are hexadecimal text.
struct FoundObjects {
  QStringView status;
  QStringView date;
  QStringView approval;
  QStringView checksum;
  qsizetype statusObjectBytes = 0;  // with tag and length
  std::optional<quint8> sum;        // XOR of all bytes before the checksum's value
};

FoundObjects FindObjects(QStringView data, StatusDescriptor& stored) {
  FoundObjects found;
  qsizetype position = 1;
  if (hex::Mid(data, 1, 2) != stored.status.tag) {
    found.status = hex::Mid(data, 1, 2 * StatusBytes);
    found.statusObjectBytes = found.status.size() / 2;
    stored.status.tlv = found.status.toString();
    position += found.status.size();
  }
  while (position < data.size()) {
    const QStringView tag = hex::Mid(data, position, 2);
    const qsizetype length = 2 * qsizetype{hex::ByteAt(data, position + 2)};
    const qsizetype valuePosition = position + 4;
    const QStringView value = hex::Mid(data, valuePosition, length);
    const QString tlv = hex::Mid(data, position, 4 + length).toString();
    if (value.size() < length || tlv.size() < 4) break;

    if (tag == stored.status.tag) {
      found.status = value;
      found.statusObjectBytes = tlv.size() / 2;
      stored.status.tlv = tlv;
    } else if (tag == stored.readingDate.tag) {
      found.date = value;
      stored.readingDate.tlv = tlv;
    } else if (tag == stored.approval.tag) {
      found.approval = value;
      stored.approval.tlv = tlv;
    } else if (tag == stored.checksum.tag) {
      found.checksum = value;
      found.sum = hex::Xor(data, 1, valuePosition - 2);
      stored.checksum.tlv = tlv;
    } else {
      break;
    }
    position = valuePosition + length;
  }
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

}  // namespace

void ReadStoredStatus(QStringView data, const EgkTarget& target) {
  StatusDescriptor& stored = target.egk.stored;
  const qsizetype expected = target.info.Reset9501 ? ExtendedLength : PlainLength;
  const FoundObjects found = FindObjects(data, stored);

  stored.checksumText = found.checksum.toString();
  if (!found.sum || hex::Value(found.checksum) != *found.sum) {
    target.dialogs.Tell(
        Icon::Critical, Dialogs::Title.toString(),
        QStringLiteral("Die Prüfsumme der gelesenen eGK VSD Zusatzdaten ist korrupt!!! "));
  }

  const QString date = TextOfHex(found.date);
  stored.storedDate = date.left(DateCharacters);
  stored.convertedDate = ConvertedDate(date);
  if (stored.convertedDate.isEmpty()) {
    TellEgk(target, QStringLiteral("Unbekanntes Format des Einlesedatums festgestellt!"));
  }

  const QString approval = TextOfHex(found.approval);
  stored.approvalNumber = approval.left(expected).trimmed();
  if (stored.approvalNumber.isEmpty()) {
    TellEgk(target, QStringLiteral("Unbekanntes Format der Zulassungsnummer festgestellt!"));
  } else if (stored.approvalNumber.startsWith(u';')) {
    TellEgk(target, QStringLiteral("Die Zulassungsnummer konnte nicht ermittelt werden!"));
  }

  stored.statusText = found.status.left(2 * StatusBytes).toString();
  if (found.statusObjectBytes > expected) {
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
