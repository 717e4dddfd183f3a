#include <QByteArray>

#include "egk/egk_reader.h"
#include "egk/egk_steps.h"
#include "egk/vsd_container.h"
#include "terminal/binary_read.h"
#include "terminal/command_catalogue.h"
#include "text/bytes.h"
#include "text/hex_text.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

// Longest blocks that are read, in bytes.
constexpr int LongestVd = 792;
constexpr int LongestPd = 848;
constexpr int LongestGvd = 448;
// EF.StatusVD: status, timestamp, version and reserved bytes.
constexpr int StatusLength = 25;

constexpr QStringView NoAccessRights =
    u"Lesen geschützter Versichertendaten (EF.GVD) nicht möglich! ";
constexpr QStringView NoUnlocking =
    u"Eine Freischaltung z.B. durch PIN Eingabe wird durch KartoCheck nicht unterstützt!";

// One read of a card. A section reports its own failure and the read goes on with the next section,
// unless the section says that it has to stop.
class CardRead {
 public:
  explicit CardRead(const EgkTarget& target) : with_(target) {}

  [[nodiscard]] EgkResult Run() {
    if (!ResetCard()) return EgkResult::Stopped;
    ReadSerialNumber();
    if (!ReadVd() || !ReadPd() || !ReadGvd() || !ReadStatus()) return EgkResult::Stopped;
    with_.insured.Store(found_, with_.info.IsMobile());
    with_.info.DisplayText = output_medium::PcAsn1;
    return EgkResult::Finished;
  }

 private:
  // Sections: false stops the read.
  [[nodiscard]] bool ResetCard();
  void ReadSerialNumber();
  [[nodiscard]] bool ReadVd();
  [[nodiscard]] bool ReadPd();
  [[nodiscard]] bool ReadGvd();
  [[nodiscard]] bool ReadStatus();

  void ReadVdBlock();
  void ReadPdBlock();
  void ReadGvdBlock();
  void ReadContainerGvd(BlockOffsets offsets);
  void ReadProtectedFile();

  // A file: false after its message was shown.
  [[nodiscard]] bool Select(QStringView command, QStringView failed, QStringView refused);
  [[nodiscard]] bool SelectEfVd();

  [[nodiscard]] HcaSelection SelectHealthCareApplication() {
    return SelectHca(with_, Lines({u"Kommando Select DF HCA war nicht erfolgreich!", u""}));
  }

  void Tell(const QString& text) { TellEgk(with_, Lines({text, u""})); }
  void TellBetweenLines(QStringView text) { TellEgk(with_, Lines({u"", text, u""})); }

  const EgkTarget& with_;
  InsuredData found_;
  bool gvdSelectNotAllowed_ = false;
};

bool CardRead::ResetCard() {
  const CtAnswer answer = with_.link.CtExchange(CommandCatalogue::ResetIcc1, Unit::Terminal);
  if (!answer.Succeeded()) {
    Tell(QStringLiteral("Kommando Reset Chipkarte war nicht erfolgreich!"));
    return false;
  }
  // A memory card answers "9000".
  if (!answer.Is(sw::OkProcessorCard)) {
    Tell(QStringLiteral("Reset Chipkarte war nicht erfolgreich!"));
    return false;
  }
  return true;
}

// EF.GDO: data object 5A with the card's serial number.
void CardRead::ReadSerialNumber() {
  const CtAnswer answer = with_.link.CtExchange(CommandCatalogue::ReadBinarySfi2, Unit::Card);
  if (!answer.Succeeded()) return;
  with_.egk.iccsn.clear();
  if (!answer.Is(sw::Ok)) return;
  const QByteArrayView data = answer.Data();
  with_.egk.iccsn = hex::Encode(bytes::Mid(data, 2, bytes::ByteAt(data, 1)));
}

bool CardRead::Select(QStringView command, QStringView failed, QStringView refused) {
  const CtAnswer answer = with_.link.CtExchange(command, Unit::Card);
  if (answer.Is(sw::Ok)) return true;
  Tell((answer.Succeeded() ? refused : failed).toString());
  return false;
}

bool CardRead::SelectEfVd() {
  return Select(CommandCatalogue::SelectEfVd, u"Kommando Select EF VD war nicht erfolgreich!",
                u"Select EF VD war nicht erfolgreich!");
}

bool CardRead::ReadVd() {
  const HcaSelection hca = SelectHealthCareApplication();
  if (hca == HcaSelection::Selected) ReadVdBlock();
  return hca != HcaSelection::Failed && hca != HcaSelection::NotOnCard;
}

void CardRead::ReadVdBlock() {
  if (!SelectEfVd()) return;
  const BinaryRead header = CtExchangeFile(with_.link, 0, 4);
  if (!header.Succeeded() || header.bytes.size() < 4) {
    return Tell(QStringLiteral("Read EF VD war nicht erfolgreich!"));
  }
  const BlockOffsets offsets = OffsetsAt(header.bytes, 0);
  if (offsets.start < 1 || offsets.end < 1 || offsets.Length() < 1 ||
      offsets.Length() > LongestVd) {
    return TellBetweenLines(u"Keine gültigen Daten in EF VD ");
  }
  const BinaryRead vd = CtExchangeFile(with_.link, offsets.start, offsets.Length());
  if (!vd.Succeeded()) return Tell(QStringLiteral("Read EF VD war nicht erfolgreich!"));
  HandToDecoder(with_, VsdKind::Vd, vd.bytes, found_);
}

bool CardRead::ReadPd() {
  const HcaSelection hca = SelectHealthCareApplication();
  if (hca == HcaSelection::Selected) ReadPdBlock();
  return hca != HcaSelection::Failed && hca != HcaSelection::NotOnCard;
}

void CardRead::ReadPdBlock() {
  if (!Select(CommandCatalogue::SelectEfPd, u"Kommando Select EF PD war nicht erfolgreich!",
              u"Select EF PD war nicht erfolgreich!")) {
    return;
  }
  const BinaryRead header = CtExchangeFile(with_.link, 0, 2);
  if (!header.Succeeded() || header.bytes.size() < 2) {
    return Tell(QStringLiteral("Read EF PD war nicht erfolgreich!"));
  }
  const int length = NumberAt(header.bytes, 0);
  if (length < 1 || length > LongestPd) {
    return TellBetweenLines(u"Keine gültigen Daten in EF PD ");
  }
  const BinaryRead pd = CtExchangeFile(with_.link, 2, length);
  if (!pd.Succeeded()) return Tell(QStringLiteral("Read EF PD war nicht erfolgreich!"));
  HandToDecoder(with_, VsdKind::Pd, pd.bytes, found_);
}

bool CardRead::ReadGvd() {
  // A failed exchange stops the read in the first two sections only; here the card may yet answer
  // the status section.
  const HcaSelection hca = SelectHealthCareApplication();
  if (hca == HcaSelection::Selected) ReadGvdBlock();
  gvdSelectNotAllowed_ = hca == HcaSelection::NotAllowed;
  return hca != HcaSelection::NotOnCard;
}

void CardRead::ReadGvdBlock() {
  if (!SelectEfVd()) return;
  const BinaryRead header = CtExchangeFile(with_.link, 4, 4);
  if (!header.Succeeded() || header.bytes.size() < 4) {
    return Tell(QStringLiteral("Read EF VD war nicht erfolgreich!"));
  }
  const BlockOffsets offsets = OffsetsAt(header.bytes, 0);
  if (offsets.IsAbsent()) {
    ReadProtectedFile();
  } else {
    ReadContainerGvd(offsets);
  }
}

void CardRead::ReadContainerGvd(BlockOffsets offsets) {
  if (offsets.Length() < 1 || offsets.Length() > LongestGvd) {
    return TellBetweenLines(u"Keine gültigen GVD Daten im EF VD Container! ");
  }
  const BinaryRead gvd = CtExchangeFile(with_.link, offsets.start, offsets.Length());
  if (!gvd.Succeeded()) {
    return Tell(QStringLiteral("Read GVD Daten aus EF VD Container war nicht erfolgreich!"));
  }
  HandToDecoder(with_, VsdKind::Gvd, gvd.bytes, found_);
}

void CardRead::ReadProtectedFile() {
  if (!Select(CommandCatalogue::SelectEfGvd, u"Kommando Select EF GVD war nicht erfolgreich!",
              u"Select EF GVD war nicht erfolgreich!")) {
    return;
  }
  const BinaryRead header = CtExchangeFile(with_.link, 0, 2);
  if (header.result == BinaryRead::Result::AccessDenied) {
    return Tell(Lines({NoAccessRights, NoUnlocking}));
  }
  if (!header.Succeeded() || header.bytes.size() < 2) {
    return Tell(QStringLiteral("Read EF GVD war nicht erfolgreich!"));
  }
  const int length = NumberAt(header.bytes, 0);
  if (length < 1 || length > LongestGvd) {
    return TellBetweenLines(u"Keine gültigen Daten in EF GVD ");
  }
  const BinaryRead gvd = CtExchangeFile(with_.link, 2, length);
  if (!gvd.Succeeded()) return Tell(QStringLiteral("Read EF GVD war nicht erfolgreich!"));
  HandToDecoder(with_, VsdKind::Gvd, gvd.bytes, found_);
}

bool CardRead::ReadStatus() {
  with_.egk.statusText.clear();
  const CtAnswer hca = with_.link.CtExchange(CommandCatalogue::SelectDfHca, Unit::Card);
  if (hca.Is(sw::NotAllowed)) {
    const bool stationaryHandheld =
        gvdSelectNotAllowed_ && with_.info.ManufacturerId == MakerNorvaHandheld;
    Tell(stationaryHandheld
             ? QStringLiteral("Das Lesen einer EGK ist im stationären Mode nicht erlaubt!")
             : QStringLiteral("Fehler 0x6900 aufgetreten!"));
    return false;
  }
  if (!hca.Is(sw::Ok)) return true;
  const CtAnswer file = with_.link.CtExchange(CommandCatalogue::SelectEfStatusVd, Unit::Card);
  if (!file.Is(sw::Ok)) return true;
  const BinaryRead status = CtExchangeFile(with_.link, 0, StatusLength);
  if (status.Succeeded() && status.bytes.size() == StatusLength) {
    with_.egk.statusText = hex::Encode(status.bytes);
  }
  return true;
}

}  // namespace

EgkResult ReadEgkFromCard(const EgkTarget& target) {
  return CardRead(target).Run();
}

}  // namespace kartocheck
