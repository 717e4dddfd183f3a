#include <algorithm>

#include "egk/egk_reader.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/quiet_front_end.h"
#include "text/code_page.h"

// Input: a byte of flags (1 a stored record, 2 an extended one, 4 the card tells the end of a read
// with "9000" instead of "6282", 8 answers of at most 100 bytes), then the bytes of EF.VD.

namespace kartocheck {
namespace {

constexpr int OffsetLimit = 0x8000;

// Serves EF.VD and refuses the other files.
class ContainerCard final : public CtApi {
 public:
  ContainerCard(QByteArray file, std::uint8_t flags)
      : file_(std::move(file)),
        endWord_((flags & 4) != 0 ? QByteArray::fromHex("9000") : QByteArray::fromHex("6282")),
        longest_((flags & 8) != 0 ? 100 : 4096) {}

  [[nodiscard]] std::int8_t Init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) override { return 0; }
  [[nodiscard]] std::int8_t Close(std::uint16_t /*ctn*/) override { return 0; }
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t /*ctn*/, std::int32_t& /*baud*/) override {
    return -1;
  }
  [[nodiscard]] std::int8_t Data(std::uint16_t /*ctn*/, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override {
    sad = dad;
    dad = 2;
    const QByteArray answer = Answer(QByteArray(reinterpret_cast<const char*>(command.data()),
                                                static_cast<qsizetype>(command.size())));
    fuzz::Require(answer.size() <= static_cast<qsizetype>(response.size()), "the answer has room");
    std::copy(answer.begin(), answer.end(), response.begin());
    responseLength = static_cast<std::uint16_t>(answer.size());
    return 0;
  }

  int erases = 0;

 private:
  QByteArray Answer(const QByteArray& command) {
    const auto byteAt = [&command](qsizetype index) { return command[index] & 0xFF; };
    if (command == QByteArray::fromHex("20110100")) return QByteArray::fromHex("9001");
    if (command == QByteArray::fromHex("000E0000")) ++erases;
    if (command.startsWith(QByteArray::fromHex("00A4020C02D0"))) selected_ = byteAt(6);
    if (!command.startsWith(QByteArray::fromHex("00B0"))) return QByteArray::fromHex("9000");
    int offset = byteAt(2) * 256 + byteAt(3);
    if (offset >= OffsetLimit) {
      fuzz::Require(byteAt(4) == 0, "an offset has 15 bits");
      selected_ = byteAt(2) & 0x1F;
      offset = byteAt(3);
    }
    if (selected_ == 0x0C) return QByteArray::fromHex("9000");
    if (selected_ != 2) return QByteArray::fromHex("6A82");
    const int le = byteAt(4);
    const int wanted = std::min(le == 0 ? 4096 : le, longest_);
    const QByteArray bytes = file_.mid(offset, wanted);
    return bytes + (bytes.size() < le ? endWord_ : QByteArray::fromHex("9000"));
  }

  QByteArray file_;
  QByteArray endWord_;
  int longest_;
  int selected_ = 0;
};

int NumberOf(const QByteArray& file, qsizetype index) {
  const auto byteAt = [&file](qsizetype at) { return at < file.size() ? file[at] & 0xFF : 0; };
  return byteAt(index) * 256 + byteAt(index + 1);
}

// What the file says of a block, read by another hand than the program's. Empty: no such block.
QByteArray BlockOnCard(const QByteArray& file, qsizetype index, int longest, bool isVd) {
  const int start = NumberOf(file, index);
  const int end = NumberOf(file, index + 2);
  if (file.size() < index + 4) return {};
  if (isVd && (start == 0 || end == 0)) return {};
  if (start >= OffsetLimit || end < start || end - start >= longest) return {};
  if (!isVd && start == 0 && end == 0) return {};
  return file.mid(start, end - start + 1);
}

QByteArray BlockInRecord(const QByteArray& file, qsizetype index) {
  const int start = NumberOf(file, index);
  const int end = NumberOf(file, index + 2);
  if (file.size() > 1250 || start == 0 || end < start || end >= file.size()) return {};
  return file.mid(start, end - start + 1);
}

// Text that is no gzip data is kept as it is.
void VerifyKept(const VsdDocument& document, const QByteArray& block) {
  if (block.startsWith('\x1F') || (block.size() > 1 && block[1] == '\x8B')) return;
  fuzz::Require(document.xmlText == TextOf(block), "the block is what the offsets tell");
}

void ReadOnce(const QByteArray& file, std::uint8_t flags) {
  ContainerCard card(file, flags);
  fuzz::QuietDialogs dialogs;
  fuzz::QuietDisplay display;
  Lamps lamps;
  fuzz::QuietEventLoop eventLoop;
  PerSlot<PortEntry> ports;
  CtSession link({.api = card,
                  .dialogs = dialogs,
                  .lamps = lamps,
                  .eventLoop = eventLoop,
                  .ports = ports,
                  .terminate = [](const auto&) { fuzz::Require(false, "nothing is fatal"); }});
  TerminalInfo info;
  InsuredData insured;
  EgkData egk;
  const ValidationSettings validation;
  const EgkTarget target{link, info, insured, egk, validation, dialogs, display, eventLoop};

  const bool isRecord = (flags & 1) != 0;
  info.Reset95 = isRecord;
  info.Reset9501 = isRecord && (flags & 2) != 0;
  fuzz::Require(
      (isRecord ? ReadEgkFromMobile(target) : ReadEgkFromCard(target)) == EgkResult::Finished,
      "the read runs to its end");
  fuzz::Require(card.erases == (isRecord ? 1 : 0), "a record is erased once, a card never");
  // A record's first answer is its only one, but for exactly 256 bytes.
  const QByteArray readable =
      isRecord && (flags & 8) != 0 ? file.first(std::min<qsizetype>(file.size(), 100)) : file;
  VerifyKept(egk.documents[VsdKind::Vd],
             isRecord ? BlockInRecord(readable, 0) : BlockOnCard(file, 0, 792, true));
  VerifyKept(egk.documents[VsdKind::Gvd],
             isRecord ? BlockInRecord(readable, 4) : BlockOnCard(file, 4, 448, false));
}

}  // namespace
}  // namespace kartocheck

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const QByteArray file(reinterpret_cast<const char*>(data + 1),
                        static_cast<qsizetype>(std::min<std::size_t>(size - 1, 4000)));
  kartocheck::ReadOnce(file, data[0]);
  return 0;
}
