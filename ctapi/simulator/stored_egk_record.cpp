#include "simulator/stored_egk_record.h"

#include <stdexcept>

namespace ctapi {

namespace {

constexpr std::uint8_t SfiPd = 0x01;
constexpr std::uint8_t SfiVd = 0x02;
constexpr std::uint8_t SfiGvd = 0x03;
constexpr std::uint8_t SfiStatusVd = 0x0C;

constexpr std::uint8_t StatusTag = 0xA0;
constexpr std::uint8_t ReadingDateTag = 0x91;
constexpr std::uint8_t ApprovalNumberTag = 0x92;
constexpr std::uint8_t CheckTag = 0x93;
constexpr std::size_t ApprovalLength = 27;
constexpr std::size_t ExtendedApprovalLength = 38;

std::string PaddedApproval(const StoredEgkContents& contents) {
  const std::size_t length = contents.Status.ApprovalLength.value_or(
      contents.Extended ? ExtendedApprovalLength : ApprovalLength);
  std::string text = *contents.Status.ApprovalNumber;
  if (text.size() > length) {
    throw std::invalid_argument("the approval number is longer than its object");
  }
  text.resize(length, ' ');
  return text;
}

}  // namespace

Bytes BuildRecordStatus(const StoredEgkContents& contents) {
  if (contents.Vsd.EfStatusVd) return *contents.Vsd.EfStatusVd;
  const RecordStatus& added = contents.Status;
  const Bytes status = BuildStatus(contents.Vsd.Status);
  Bytes file;
  if (added.Layout == StatusLayout::DataObjects) {
    AppendObject(file, StatusTag, status);
  } else {
    file = status;
  }
  if (added.ReadingDate) AppendObject(file, ReadingDateTag, *added.ReadingDate);
  if (added.ApprovalNumber) AppendObject(file, ApprovalNumberTag, PaddedApproval(contents));
  AppendCheckObject(file, CheckTag, added.Check);
  return file;
}

StoredEgkRecord::StoredEgkRecord(const StoredEgkContents& contents)
    : hca_(contents.Hca), inPieces_(contents.InPieces) {
  const VsdContents& vsd = contents.Vsd;
  files_[SfiStatusVd] = BuildRecordStatus(contents);
  files_[SfiPd] = BuildEfPd(vsd);
  files_[SfiVd] = BuildEfVd(vsd);
  if (contents.Extended && (vsd.GvdInFile() || vsd.EfGvd)) files_[SfiGvd] = BuildEfGvd(vsd);
}

void StoredEgkRecord::Reset() {
  selected_ = false;
  current_ = 0;
}

Bytes StoredEgkRecord::Transmit(ByteView bytes) {
  const auto command = ParseCommand(bytes);
  if (!command) return Answer(sw::WrongLength);
  if (command->Cla != 0) return Answer(sw::UnknownClass);
  if (command->Ins == iso7816::InsSelect) return Select(*command);
  if (command->Ins == iso7816::InsReadBinary) return ReadBinary(*command);
  return Answer(sw::UnknownInstruction);
}

Bytes StoredEgkRecord::Select(const Command& command) {
  Reset();
  const bool known = SelectsApplication(command) && Names(command, iso7816::aid::Hca);
  if (!known || hca_ == ApplicationState::Missing) return Answer(sw::NotFound);
  if (hca_ == ApplicationState::Deactivated) return Answer(sw::Deactivated);
  selected_ = true;
  return Answer(sw::Ok);
}

Bytes StoredEgkRecord::ReadBinary(const Command& command) {
  if (!command.Le || !command.Data.empty()) return Answer(sw::WrongLength);
  if (!selected_) return Answer(sw::NoFileSelected);
  const bool byShort = (command.P1 & iso7816::HasShortIdentifier) != 0;
  if (byShort) {
    current_ = command.P1 & iso7816::ShortIdentifierBits;
  } else if (current_ == 0) {
    return Answer(sw::NoFileSelected);
  }
  const auto found = files_.find(current_);
  if (found == files_.end()) {
    current_ = 0;
    return Answer(sw::NotFound);
  }
  const ByteView file = found->second;
  const std::size_t offset = byShort ? command.P2 : command.Parameters();
  if (*command.Le == iso7816::BytesOfLeMaximum && !inPieces_ && offset < file.size()) {
    return Answer(file.subspan(offset), sw::Ok);
  }
  return AnswerPiece(file, offset, *command.Le);
}

}  // namespace ctapi
