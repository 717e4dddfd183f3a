#include <algorithm>

#include "egk/stored_status.h"
#include "fuzz/answer_source.h"
#include "fuzz/fuzz_input.h"
#include "text/code_page.h"
#include "text/hex_text.h"

// Input: a byte of flags (1 an extended record), then the record's status data.

namespace kartocheck {
namespace {

// The same walk over bytes, by another hand than the program's.
struct Objects {
  QByteArray status;
  QByteArray date;
  QByteArray approval;
  QByteArray checksum;
  bool hasDate = false;
  bool hasApproval = false;
  bool hasChecksum = false;
  QByteArray rest;  // behind the objects
  bool fits = false;
  qsizetype statusObject = 0;  // bytes, with tag and length where it has them

  [[nodiscard]] bool LackDateAndApproval() const {
    const bool isFiller =
        rest == QByteArray(rest.size(), '\0') || rest == QByteArray(rest.size(), '\xFF');
    return !hasDate && !hasApproval && isFiller;
  }
};

bool IsKnownTag(int tag) {
  return tag == 0xA0 || (tag >= 0x91 && tag <= 0x93);
}

Objects ObjectsOf(const QByteArray& record) {
  Objects objects;
  qsizetype at = 0;
  if (!record.startsWith('\xA0')) {
    objects.status = record.left(25);
    at = objects.status.size();
    objects.statusObject = at;
  }
  while (at < record.size()) {
    const int tag = record[at] & 0xFF;
    if (!IsKnownTag(tag) || at + 2 > record.size()) break;
    const int length = record[at + 1] & 0xFF;
    if (at + 2 + length > record.size()) break;
    const QByteArray value = record.mid(at + 2, length);
    if (tag == 0xA0) {
      objects.status = value;
      objects.statusObject = 2 + length;
    } else if (tag == 0x91) {
      objects.date = value;
      objects.hasDate = true;
    } else if (tag == 0x92) {
      objects.approval = value;
      objects.hasApproval = true;
    } else {
      objects.checksum = value;
      objects.hasChecksum = true;
      char sum = 0;
      for (const char byte : record.left(at + 2)) sum = static_cast<char>(sum ^ byte);
      const bool isZeroed = std::count(value.begin(), value.end() - (length > 0 ? 1 : 0), '\0') ==
                            length - (length > 0 ? 1 : 0);
      objects.fits = length > 0 && isZeroed && value.back() == sum;
    }
    at += 2 + length;
  }
  objects.rest = record.mid(at);
  return objects;
}

bool IsDate(const QByteArray& text) {
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  return text.size() == 8 && isDigit(text[4]) && isDigit(text[5]);
}

// One message a fault.
int FaultsOf(const Objects& objects, int longest) {
  const QString approval = TextOf(objects.approval).left(longest).trimmed();
  const bool hasMaker = !approval.left(approval.indexOf(u';')).trimmed().isEmpty();
  const bool lacks = objects.LackDateAndApproval();
  const bool faults[]{!objects.fits && !(lacks && !objects.hasChecksum),
                      !lacks && !IsDate(objects.date.left(8)),
                      !lacks && !hasMaker,
                      objects.statusObject > longest,
                      objects.date.size() > 8,
                      objects.approval.size() > longest};
  return static_cast<int>(std::count(std::begin(faults), std::end(faults), true));
}

void ReadOnce(const QByteArray& record, bool isExtended) {
  fuzz::ByteSource noAnswers(nullptr, 0);
  fuzz::FuzzedLink link(noAnswers, false);
  TerminalInfo info;
  info.Reset9501 = isExtended;
  InsuredData insured;
  EgkData egk;
  const ValidationSettings validation;
  ReadStoredStatus(hex::Encode(record), {link.session, info, insured, egk, validation, link.dialogs,
                                         link.display, link.eventLoop});

  const StatusDescriptor& stored = egk.stored;
  const Objects objects = ObjectsOf(record);
  const int longest = isExtended ? 38 : 27;
  fuzz::Require(stored.statusText == hex::Encode(objects.status.left(25)), "status");
  fuzz::Require(stored.storedDate == TextOf(objects.date.left(8)), "reading date");
  fuzz::Require(stored.convertedDate.size() == (IsDate(objects.date.left(8)) ? 10 : 0),
                "TT.MM.JJJJ");
  fuzz::Require(stored.approvalNumber == TextOf(objects.approval).left(longest).trimmed(),
                "approval number");
  fuzz::Require(LacksDateAndApproval(hex::Encode(record)) == objects.LackDateAndApproval(),
                "a missing date and approval number");
  fuzz::Require(stored.checksumText == hex::Encode(objects.checksum), "checksum");
  fuzz::Require(link.dialogs.messages == FaultsOf(objects, longest), "every fault is told once");
  fuzz::Require(insured.IsEmpty(), "nothing is stored");
  fuzz::Require(link.api.exchanges == 0, "status data need no exchange");
}

}  // namespace
}  // namespace kartocheck

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  kartocheck::ReadOnce(
      QByteArray(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1)),
      (data[0] & 1) != 0);
  return 0;
}
