#include "simulator/egk_card.h"

#include <algorithm>
#include <stdexcept>

namespace ctapi {

namespace {

constexpr std::uint16_t Mf = 0x3F00;
constexpr std::uint16_t EfDir = 0x2F00;
constexpr std::uint16_t EfAtr = 0x2F01;
constexpr std::uint16_t EfGdo = 0x2F02;
constexpr std::uint16_t EfVersion = 0x2F10;
constexpr std::uint16_t EfVersion2 = 0x2F11;
constexpr std::uint16_t EfPd = 0xD001;
constexpr std::uint16_t EfVd = 0xD002;
constexpr std::uint16_t EfGvd = 0xD003;
constexpr std::uint16_t EfStatusVd = 0xD00C;

// SELECT: what P1 names, and P2 for no response data.
constexpr std::uint8_t ByFile = 0x00;
constexpr std::uint8_t ByElementaryFile = 0x02;
constexpr std::uint8_t NoResponseData = 0x0C;

// READ BINARY: P1 with a short identifier has bits 7 and 6 clear.
constexpr std::uint8_t ShortIdentifierReserved = 0x60;

// READ RECORD: the lower bits of P2 say that P1 is a record's number.
constexpr std::uint8_t RecordModeBits = 0x07;
constexpr std::uint8_t RecordByNumber = 0x04;

// EF.GDO: the card serial number in data object 5A, two digits a byte.
Bytes BuildGdo(const std::string& iccsn) {
  const auto digits = BytesFromHex(iccsn);
  const bool decimal = iccsn.find_first_not_of("0123456789") == std::string::npos;
  if (!digits || !decimal) {
    throw std::invalid_argument("the card serial number needs an even number of digits");
  }
  Bytes gdo;
  AppendObject(gdo, 0x5A, *digits);
  return gdo;
}

// EF.DIR: an application template for each application identifier.
Bytes ApplicationTemplate(std::string_view applicationId) {
  Bytes identifier;
  AppendObject(identifier, 0x4F, applicationId);
  Bytes record;
  AppendObject(record, 0x61, identifier);
  return record;
}

// EF.ATR: the buffer sizes that the card offers for commands and responses (data object E0).
Bytes BuildEfAtr(EgkGeneration generation) {
  const std::size_t bufferSize = generation == EgkGeneration::G21 ? 2048 : 1024;
  Bytes sizes;
  for (int i = 0; i < 4; ++i) {
    Bytes number;
    AppendBigEndian(number, bufferSize);
    AppendObject(sizes, 0x02, number);
  }
  Bytes file;
  AppendObject(file, 0xE0, sizes);
  return file;
}

// EF.VERSION: three records with the version of the files, XXXYYYZZZZ in BCD.
std::vector<Bytes> VersionRecords(EgkGeneration generation) {
  const std::uint8_t major = generation == EgkGeneration::G1 ? 0x20 : 0x30;
  const std::uint8_t minor = generation == EgkGeneration::G1 ? 0x02 : 0x00;
  return std::vector<Bytes>(3, Bytes{0x00, major, minor, 0x00, 0x00});
}

// EF.Version2: data object EF with the versions of the filling instructions (C0) and of the card's
// object system (C1), three bytes each.
Bytes BuildVersion2() {
  const Bytes fillingInstructions{0x02, 0x00, 0x00};
  const Bytes objectSystem{0x04, 0x04, 0x00};
  Bytes versions;
  AppendObject(versions, 0xC0, fillingInstructions);
  AppendObject(versions, 0xC1, objectSystem);
  Bytes file;
  AppendObject(file, 0xEF, versions);
  return file;
}

}  // namespace

EgkCard::EgkCard(const EgkContents& contents)
    : generation_(contents.Generation), hca_(contents.Hca) {
  mfFiles_.push_back({.Identifier = EfDir,
                      .ShortIdentifier = 0x1E,
                      .Records = {ApplicationTemplate(iso7816::aid::EgkRoot),
                                  ApplicationTemplate(iso7816::aid::Hca)}});
  mfFiles_.push_back(
      {.Identifier = EfAtr, .ShortIdentifier = 0x1D, .Content = BuildEfAtr(generation_)});
  mfFiles_.push_back(
      {.Identifier = EfGdo, .ShortIdentifier = 0x02, .Content = BuildGdo(contents.Iccsn)});
  if (generation_ == EgkGeneration::G21) {
    mfFiles_.push_back(
        {.Identifier = EfVersion2, .ShortIdentifier = 0x11, .Content = BuildVersion2()});
  } else {
    mfFiles_.push_back(
        {.Identifier = EfVersion, .ShortIdentifier = 0x10, .Records = VersionRecords(generation_)});
  }

  const VsdContents& vsd = contents.Vsd;
  hcaFiles_.push_back({.Identifier = EfPd, .ShortIdentifier = 0x01, .Content = BuildEfPd(vsd)});
  hcaFiles_.push_back({.Identifier = EfVd, .ShortIdentifier = 0x02, .Content = BuildEfVd(vsd)});
  hcaFiles_.push_back({.Identifier = EfGvd,
                       .ShortIdentifier = 0x03,
                       .Content = BuildEfGvd(vsd),
                       .Readable = vsd.GvdInFile() || vsd.EfGvd.has_value()});
  hcaFiles_.push_back(
      {.Identifier = EfStatusVd, .ShortIdentifier = 0x0C, .Content = BuildEfStatusVd(vsd)});
}

void EgkCard::Reset() {
  directory_ = Directory::Mf;
  selected_ = 0;
}

Bytes EgkCard::Transmit(ByteView bytes) {
  const auto command = ParseCommand(bytes);
  if (!command) return Answer(sw::WrongLength);
  if (command->Cla != 0) return Answer(sw::UnknownClass);
  switch (command->Ins) {
    case iso7816::InsSelect:
      return Select(*command);
    case iso7816::InsReadBinary:
      return ReadBinary(*command);
    case iso7816::InsReadRecord:
      return ReadRecord(*command);
    default:
      return Answer(sw::UnknownInstruction);
  }
}

Bytes EgkCard::Select(const Command& command) {
  if (command.P1 == iso7816::SelectByName) return SelectApplication(command);
  if (command.P2 != NoResponseData) return Answer(sw::IncorrectP1P2);
  if (command.Data.size() != 2) return Answer(sw::WrongLength);
  const auto identifier = static_cast<std::uint16_t>((command.Data[0] << 8) | command.Data[1]);
  if (command.P1 == ByFile && identifier == Mf) {
    Reset();
    return Answer(sw::Ok);
  }
  if (command.P1 != ByElementaryFile) return Answer(sw::IncorrectP1P2);
  if (FindHere(identifier) == nullptr) return Answer(sw::NotFound);
  selected_ = identifier;
  return Answer(sw::Ok);
}

Bytes EgkCard::SelectApplication(const Command& command) {
  const bool root = Names(command, iso7816::aid::EgkRoot);
  const bool hca = Names(command, iso7816::aid::Hca) && hca_ != ApplicationState::Missing;
  if (!root && !hca) return Answer(sw::NotFound);
  if (command.P2 != NoResponseData) return Answer(sw::IncorrectP1P2);
  directory_ = root ? Directory::Mf : Directory::Hca;
  selected_ = 0;
  const bool deactivated = hca && hca_ == ApplicationState::Deactivated;
  return Answer(deactivated ? sw::Deactivated : sw::Ok);
}

Bytes EgkCard::ReadBinary(const Command& command) {
  if (!command.Le || !command.Data.empty()) return Answer(sw::WrongLength);
  const bool byShort = (command.P1 & iso7816::HasShortIdentifier) != 0;
  if (byShort && (command.P1 & ShortIdentifierReserved) != 0) return Answer(sw::IncorrectP1P2);
  if (!byShort && selected_ == 0) return Answer(sw::NoFileSelected);

  const File* const file =
      byShort ? FindHereByShort(command.P1 & iso7816::ShortIdentifierBits) : FindHere(selected_);
  if (file == nullptr) return Answer(sw::NotFound);
  selected_ = file->Identifier;
  if (!file->IsTransparent()) return Answer(sw::NoTransparentFile);
  const bool allowed = directory_ == Directory::Mf || hca_ == ApplicationState::Active;
  if (!allowed || !file->Readable) return Answer(sw::SecurityStatus);
  return AnswerPiece(file->Content, byShort ? command.P2 : command.Parameters(), *command.Le);
}

Bytes EgkCard::ReadRecord(const Command& command) {
  if (!command.Le || !command.Data.empty()) return Answer(sw::WrongLength);
  if ((command.P2 & RecordModeBits) != RecordByNumber) return Answer(sw::IncorrectP1P2);
  const auto shortIdentifier = static_cast<std::uint8_t>(command.P2 >> 3);
  if (shortIdentifier == 0 && selected_ == 0) return Answer(sw::NoFileSelected);

  const File* const file =
      shortIdentifier != 0 ? FindHereByShort(shortIdentifier) : FindHere(selected_);
  if (file == nullptr) return Answer(sw::NotFound);
  selected_ = file->Identifier;
  if (file->IsTransparent()) return Answer(sw::NoTransparentFile);
  if (command.P1 == 0 || command.P1 > file->Records.size()) return Answer(sw::RecordNotFound);
  return AnswerPiece(file->Records[command.P1 - std::size_t{1}], 0, *command.Le);
}

Bytes EgkCard::Atr() const {
  // TA1: 372 clocks for 12 bits' worth of rate, or 512 for 64. Then T=1, information fields of 254
  // bytes, waiting times, supply voltages A and B.
  const std::uint8_t rate = generation_ == EgkGeneration::G21 ? 0x97 : 0x18;
  Bytes atr{0x3B, 0x90, rate, 0x81, 0xB1, 0xFE, 0x45, 0x1F, 0x03};
  // Historical bytes in compact form: card service data, card capabilities, life cycle and status.
  const Bytes historical{0x00, 0x31, 0xC0, 0x73, 0x96, 0x21, 0xC0, 0x05, 0x90, 0x00};
  atr[1] = static_cast<std::uint8_t>(atr[1] | historical.size());
  Append(atr, historical);
  atr.push_back(XorOf(ByteView(atr).subspan(1)));
  return atr;
}

const std::vector<EgkCard::File>& EgkCard::FilesHere() const {
  return directory_ == Directory::Mf ? mfFiles_ : hcaFiles_;
}

const EgkCard::File* EgkCard::FindHere(std::uint16_t identifier) const {
  const auto found =
      std::find_if(FilesHere().begin(), FilesHere().end(),
                   [identifier](const File& file) { return file.Identifier == identifier; });
  return found == FilesHere().end() ? nullptr : &*found;
}

const EgkCard::File* EgkCard::FindHereByShort(std::uint8_t identifier) const {
  const auto found =
      std::find_if(FilesHere().begin(), FilesHere().end(),
                   [identifier](const File& file) { return file.ShortIdentifier == identifier; });
  return found == FilesHere().end() ? nullptr : &*found;
}

}  // namespace ctapi
