#include "kvk/kvk_reader.h"

#include <QByteArray>
#include <QString>

#include "fuzz/byte_source.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/quiet_front_end.h"
#include "text/hex_text.h"

// Input: a byte of flags (1 mobile terminal, 2 USB device, 4 product code of a Delta, 8 the text
// itself is the input, not bytes), then the data.

namespace kartocheck {
namespace {

bool IsTemplate(QStringView data) {
  return data.startsWith(u"60");
}

void ReadOnce(QStringView data, std::uint8_t flags) {
  fuzz::QuietDialogs dialogs;
  TerminalInfo info;
  info.Reset95 = (flags & 1) != 0;
  if ((flags & 4) != 0) info.ProductCode = product_code::SerieDelta;
  InsuredData insured;
  const int pn = (flags & 2) != 0 ? 8192 : 1;
  const bool isRead = ReadKvk(data, {info, insured, Port(pn), dialogs}) == KvkResult::Read;

  fuzz::Require(isRead || dialogs.messages > 0, "a failed read has shown a message");
  fuzz::Require(dialogs.messages <= 2, "no read shows more than two messages");
  fuzz::Require(dialogs.questions == 0, "no read asks");
  const qsizetype length = data.size();
  fuzz::Require(length >= 106 || (!isRead && insured.IsEmpty()), "short data are no KVK");
  fuzz::Require(length <= 518 || (!isRead && insured.IsEmpty()), "long data are no KVK");
  const bool hasSupplement = !insured[Element::ReadingDate].isEmpty() ||
                             !insured[Element::ApprovalNumber].isEmpty() ||
                             !insured[Element::ChecksumSupplement].isEmpty();
  fuzz::Require(info.IsMobile() || !hasSupplement, "a card has no supplement");
  if (isRead && IsTemplate(data)) {
    fuzz::Require(!insured[Element::Checksum].isEmpty(), "a good template has a checksum");
    fuzz::Require(!info.IsMobile() || !insured[Element::ChecksumSupplement].isEmpty(),
                  "a good stored record has a supplement");
  }
}

}  // namespace
}  // namespace kartocheck

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kartocheck::fuzz::ByteSource source(data, size);
  const std::uint8_t flags = source.Byte();
  const auto rest = source.Rest();
  const QByteArrayView bytes(rest.data(), static_cast<qsizetype>(rest.size()));
  const bool isText = (flags & 8) != 0;
  kartocheck::ReadOnce(isText ? QString::fromLatin1(bytes) : kartocheck::hex::Encode(bytes), flags);
  return 0;
}
