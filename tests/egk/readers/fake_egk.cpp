#include "egk/readers/fake_egk.h"

#include <algorithm>

#include "egk/readers/sample_documents.h"
#include "egk/readers/script_parts.h"

namespace kartocheck::test {

namespace {

const QByteArray Ok = QByteArray::fromHex("9000");
const QByteArray ProcessorCard = QByteArray::fromHex("9001");
const QByteArray EndOfFile = QByteArray::fromHex("6282");
const QByteArray SecurityStatus = QByteArray::fromHex("6982");
const QByteArray NoFileSelected = QByteArray::fromHex("6986");
const QByteArray FileNotFound = QByteArray::fromHex("6A82");
const QByteArray WrongOffset = QByteArray::fromHex("6B00");
const QByteArray UnknownInstruction = QByteArray::fromHex("6D00");

constexpr int Pd = 0x01;
constexpr int Vd = 0x02;
constexpr int Gvd = 0x03;
constexpr int StatusFile = 0x0C;

}  // namespace

FakeEgk::FakeEgk(Holds holds)
    : holds_(holds),
      gdo_(Gdo()),
      pd_(FileWithLength(Compressed(PdDocument(), 600))),
      gvd_(FileWithLength(Compressed(GvdDocument(), 300))) {
  const bool inContainer = holds == Holds::CardWithContainerGvd || holds == Holds::PlainRecord;
  vd_ = Container(Compressed(VdDocument(), 700), inContainer ? gvd_.mid(2) : QByteArray());
  status_ = holds == Holds::PlainRecord      ? PlainStatusRecord()
            : holds == Holds::ExtendedRecord ? ExtendedStatusRecord()
                                             : StatusVd();
}

bool FakeEgk::IsRecord() const {
  return holds_ == Holds::PlainRecord || holds_ == Holds::ExtendedRecord;
}

std::int8_t FakeEgk::Init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  return 0;
}

std::int8_t FakeEgk::Data(std::uint16_t /*ctn*/, std::uint8_t& dad, std::uint8_t& sad,
                          std::span<const std::uint8_t> command, std::span<std::uint8_t> response,
                          std::uint16_t& responseLength) {
  const QByteArray answer = Answer(QByteArray(reinterpret_cast<const char*>(command.data()),
                                              static_cast<qsizetype>(command.size())));
  sad = dad;
  dad = 2;
  std::copy(answer.begin(), answer.end(), response.begin());
  responseLength = static_cast<std::uint16_t>(answer.size());
  return 0;
}

std::int8_t FakeEgk::Close(std::uint16_t /*ctn*/) {
  return 0;
}

std::int8_t FakeEgk::GetBaudrate(std::uint16_t /*ctn*/, std::int32_t& /*baud*/) {
  return -1;
}

QByteArray FakeEgk::Answer(const QByteArray& command) {
  if (command == QByteArray::fromHex("2011000000")) {
    if (!IsRecord()) return Ok;
    return QByteArray::fromHex(holds_ == Holds::ExtendedRecord ? "9501" : "9500");
  }
  if (command == QByteArray::fromHex("201201000101")) return ProcessorCard;
  if (command == QByteArray::fromHex("20110100")) {
    applicationSelected_ = false;
    selected_ = 0;
    return IsRecord() ? UnknownInstruction : ProcessorCard;
  }
  if (command == QByteArray::fromHex("201501000100")) return Ok;
  if (command == QByteArray::fromHex("00A4040C06D27600000102")) {
    if (isErased_) return FileNotFound;
    applicationSelected_ = true;
    selected_ = 0;
    return Ok;
  }
  if (command == QByteArray::fromHex("000E0000")) {
    if (!IsRecord()) return UnknownInstruction;
    isErased_ = true;
    return Ok;
  }
  const auto byteAt = [&command](qsizetype index) { return command[index] & 0xFF; };
  if (command.startsWith(QByteArray::fromHex("00A4020C02")) && command.size() == 7) {
    return SelectFile(byteAt(5) * 256 + byteAt(6));
  }
  if (command.startsWith(QByteArray::fromHex("00B0")) && command.size() == 5) {
    return ReadFile(byteAt(2) * 256 + byteAt(3), byteAt(4));
  }
  return UnknownInstruction;
}

QByteArray FakeEgk::SelectFile(int identifier) {
  if (identifier / 256 != 0xD0 || FileOf(identifier % 256) == nullptr) return FileNotFound;
  selected_ = identifier % 256;
  return Ok;
}

const QByteArray* FakeEgk::FileOf(int shortIdentifier) const {
  if (isErased_) return nullptr;
  if (!applicationSelected_) return shortIdentifier == Vd ? &gdo_ : nullptr;
  switch (shortIdentifier) {
    case Pd:
      return &pd_;
    case Vd:
      return &vd_;
    case Gvd:
      return holds_ == Holds::PlainRecord ? nullptr : &gvd_;
    case StatusFile:
      return &status_;
    default:
      return nullptr;
  }
}

QByteArray FakeEgk::ReadFile(int p1p2, int le) {
  const bool isShort = (p1p2 & 0x8000) != 0;
  if (isShort) selected_ = p1p2 / 256 & 0x1F;
  if (selected_ == 0) return NoFileSelected;
  const QByteArray* const file = FileOf(selected_);
  if (file == nullptr) return FileNotFound;
  if (selected_ == Gvd && holds_ == Holds::CardWithProtectedGvd) return SecurityStatus;

  const int offset = isShort ? p1p2 & 0xFF : p1p2;
  const int wanted = le == 0 ? 256 : le;
  if (offset >= file->size()) return WrongOffset;
  const QByteArray bytes = file->mid(offset, wanted);
  return bytes + (le != 0 && bytes.size() < wanted ? EndOfFile : Ok);
}

}  // namespace kartocheck::test
