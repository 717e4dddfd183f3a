#include <QByteArray>
#include <QStringList>

#include "egk/egk_reader.h"
#include "egk/egk_steps.h"
#include "egk/stored_status.h"
#include "egk/vsd_container.h"
#include "terminal/binary_read.h"
#include "terminal/command_catalogue.h"
#include "text/hex_text.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

// A stored file: P1 P2 with its short file identifier, and the size of its buffer in bytes.
struct StoredFile {
  std::uint16_t p1p2;
  int bufferSize;
};

constexpr StoredFile EfStatusVd{0x8C00, 256};
constexpr StoredFile EfPd{0x8100, 850};
constexpr StoredFile EfVd{0x8200, 1250};
constexpr StoredFile EfGvd{0x8300, 600};

constexpr QStringView NoGvdStored =
    u"Zu diesem Datensatz wurden keine geschützten Versichertendaten (GVD) gespeichert!";

// The block behind a length of two bytes; empty where the length does not fit the file.
QByteArray BlockBehindLength(const QByteArray& file) {
  const int length = NumberAt(file, 0);
  return length >= 1 && length < file.size() - 1 ? file.mid(2, length) : QByteArray();
}

// The block between the offsets; empty where it does not lie in the file.
QByteArray BlockBetween(const QByteArray& file, BlockOffsets offsets) {
  const bool within = offsets.start >= 1 && offsets.Length() >= 1 && offsets.end < file.size();
  return within ? file.mid(offsets.start, offsets.Length()) : QByteArray();
}

constexpr QStringView NoDateAndApprovalStored =
    u"Zu diesem Datensatz wurden weder Einlesedatum noch Zulassungsnummer gespeichert!";

// One read of a stored record. Faults of single files are noted; the notes are shown together after
// the erase.
class RecordRead {
 public:
  explicit RecordRead(const EgkTarget& target) : with_(target) {}

  [[nodiscard]] EgkResult Run() {
    with_.egk.stored = {};
    if (SelectHca(with_, QStringLiteral("Das Kommando Select DF HCA war nicht erfolgreich!")) !=
        HcaSelection::Selected) {
      return EgkResult::Stopped;
    }
    if (!ReadStatus()) return EgkResult::Stopped;
    ReadPd();
    ReadVd();
    if (with_.info.Reset9501) ReadGvd();
    EraseRecord();
    ShowNotes();
    TakeOver();
    with_.info.DisplayText = output_medium::PcAsn1;
    return EgkResult::Finished;
  }

 private:
  [[nodiscard]] bool ReadStatus();
  void ReadPd();
  void ReadVd();
  void ReadGvd();
  void EraseRecord();
  void ShowNotes();
  void TakeOver();
  void TakeOverStatus();

  [[nodiscard]] BinaryRead Read(StoredFile file) {
    return CtExchangeRecord(with_.link, file.p1p2, file.bufferSize);
  }
  void HandOver(VsdKind kind, const QByteArray& block) {
    if (!block.isEmpty()) HandToDecoder(with_, kind, block, found_);
  }
  void Note(QStringView text) { notes_ += u"\r\n" + text; }

  const EgkTarget& with_;
  InsuredData found_;
  QString notes_;
  bool hasStatus_ = false;
  QString status_;
  QByteArray pd_;
  QByteArray vd_;
  QByteArray containerGvd_;
  QByteArray gvd_;
};

// EF.StatusVD. False stops the read: a terminal with extended records hands out nothing before its
// card (HBA or SMC-B) has released it.
bool RecordRead::ReadStatus() {
  const BinaryRead read = Read(EfStatusVd);
  if (read.Succeeded()) {
    hasStatus_ = true;
    status_ = hex::Encode(read.bytes);
    if (LacksDateAndApproval(status_)) Note(NoDateAndApprovalStored);
    return true;
  }
  if (!with_.info.Reset9501) {
    Note(u"Read EF Status VD  war nicht erfolgreich!");
    return true;
  }
  if (read.statusWord == sw::ReadFailed || read.statusWord == sw::NotFound) {
    TellEgk(with_, QStringLiteral("Ist die HBA/SMC-B Karte im Terminal freigeschaltet?"));
  } else if (read.statusWord == sw::NotAllowed) {
    TellEgk(with_,
            QStringLiteral("Ist die HBA/SMC-B Karte im Terminal gesteckt und freigeschaltet?"));
  } else {
    TellEgk(with_, QStringLiteral("Das Kommando Read Status VD war nicht erfolgreich!"));
  }
  return false;
}

void RecordRead::ReadPd() {
  const BinaryRead read = Read(EfPd);
  if (read.bytes.isEmpty()) return Note(u"Read EF PD war nicht erfolgreich!");
  pd_ = BlockBehindLength(read.bytes);
  if (pd_.isEmpty()) Note(u"Keine gültigen Daten in EF PD ");
}

void RecordRead::ReadVd() {
  const BinaryRead read = Read(EfVd);
  if (read.bytes.isEmpty()) return Note(u"Read EF VD war nicht erfolgreich!");
  vd_ = BlockBetween(read.bytes, OffsetsAt(read.bytes, 0));
  if (vd_.isEmpty()) Note(u"Keine gültigen VD Daten in EF VD ");

  const BlockOffsets gvd = OffsetsAt(read.bytes, 4);
  if (gvd.IsAbsent()) {
    if (!with_.info.Reset9501) Note(u"Keine GVD Daten im EF VD ");
    return;
  }
  containerGvd_ = BlockBetween(read.bytes, gvd);
  if (containerGvd_.isEmpty()) Note(u"Keine gültigen GVD Daten im EF VD ");
}

void RecordRead::ReadGvd() {
  const BinaryRead read = Read(EfGvd);
  if (read.bytes.isEmpty()) {
    return Note(read.statusWord == sw::NotFound
                    ? NoGvdStored
                    : QStringView(u"Read EF GVD war nicht erfolgreich!"));
  }
  gvd_ = BlockBehindLength(read.bytes);
  if (gvd_.isEmpty()) Note(u"Keine gültigen Daten in EF GVD ");
}

// The record is read once and then gone, which the user agreed to before.
void RecordRead::EraseRecord() {
  const CtSession::BeforeFatal save(with_.link, [this] { TakeOver(); });
  const CtAnswer answer = with_.link.CtExchange(CommandCatalogue::EraseBinary, Unit::Card);
  if (!answer.Succeeded()) return Note(u"Kommando ERASE BINARY war nicht erfolgreich!");
  if (!answer.Is(sw::Ok)) return Note(u"ERASE BINARY war nicht erfolgreich!");
  (void)with_.link.CtExchange(CommandCatalogue::EjectIcc1, Unit::Terminal);
}

void RecordRead::ShowNotes() {
  if (!notes_.isEmpty()) TellEgk(with_, notes_);
}

void RecordRead::TakeOver() {
  if (hasStatus_) TakeOverStatus();
  HandOver(VsdKind::Pd, pd_);
  HandOver(VsdKind::Vd, vd_);
  HandOver(VsdKind::Gvd, gvd_.isEmpty() ? containerGvd_ : gvd_);
  with_.insured.Store(found_, with_.info.IsMobile());
}

void RecordRead::TakeOverStatus() {
  ReadStoredStatus(status_, with_);
  const StatusDescriptor& stored = with_.egk.stored;
  found_[Element::ReadingDate] = stored.convertedDate;
  found_[Element::ApprovalNumber] = stored.approvalNumber;
  found_[Element::ChecksumSupplement] = stored.checksumText.left(2);
}

}  // namespace

EgkResult ReadEgkFromMobile(const EgkTarget& target) {
  return RecordRead(target).Run();
}

}  // namespace kartocheck
