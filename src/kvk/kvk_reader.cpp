#include "kvk/kvk_reader.h"

#include <optional>

#include "kvk/model_correction.h"
#include "text/code_page.h"
#include "text/hex_text.h"

namespace kartocheck {

namespace {

// Lengths in hexadecimal characters.
constexpr qsizetype LeastLength = 106;
constexpr qsizetype CardLength = 438;        // bound, and the fixed format, without supplement
constexpr qsizetype SupplementLength = 462;  // fixed format with supplement
constexpr qsizetype LongRecordLength = 510;  // fixed format with the long approval number
constexpr qsizetype MobileBound = 518;
constexpr qsizetype ShortSupplement = 36;
constexpr qsizetype LongestSupplement = 106;

constexpr int LongApprovalNumberWidth = 27;  // bytes, in the 255-byte fixed format

// Where a template form keeps what. Positions are 1-based characters.
struct TemplateShape {
  int lengthPosition;
  int lengthBytes;
  int headerBytes;
  int elementsPosition;
  int checksumOffset;  // the checksum range ends at 2 * content length + this
};

constexpr TemplateShape Shape60{3, 1, 2, 5, 2};
constexpr TemplateShape Shape6081{5, 1, 3, 7, 4};
// The range stops one byte early: the length byte of the checksum element takes no part. Terminals
// compute it so.
constexpr TemplateShape Shape6082{5, 2, 4, 9, 4};

bool HasAcceptedLength(QStringView data, bool mobile) {
  qsizetype length = data.size();
  if (!mobile && (length == SupplementLength || length == LongRecordLength)) length = CardLength;
  return length >= LeastLength && length <= (mobile ? MobileBound : CardLength);
}

KvkForm FormOf(QStringView data) {
  if (data.startsWith(u"6081")) return KvkForm::Template6081;
  if (data.startsWith(u"6082")) return KvkForm::Template6082;
  if (data.startsWith(u"60")) return KvkForm::Template60;
  return KvkForm::Fixed;
}

const TemplateShape& ShapeOf(KvkForm form) {
  switch (form) {
    case KvkForm::Template6081:
      return Shape6081;
    case KvkForm::Template6082:
      return Shape6082;
    default:
      return Shape60;
  }
}

KvkResult Refuse(const KvkTarget& target, QStringView message) {
  target.dialogs.Tell(Icon::Critical, Dialogs::Title.toString(), message.toString());
  return KvkResult::Refused;
}

std::optional<Element> ElementOfTag(quint8 tag) {
  for (std::size_t i = 0; i < ElementTable.size(); ++i) {
    if (ElementTable[i].tag == tag) return static_cast<Element>(i);
  }
  return std::nullopt;
}

bool IsBinary(Element element) {
  return ElementTable[static_cast<std::size_t>(element)].kind == FieldKind::Binary;
}

KvkResult ReadTemplate(QStringView data, const TemplateShape& shape, const KvkTarget& target) {
  const qsizetype length = hex::NumberAt(data, shape.lengthPosition, shape.lengthBytes);
  ParseKvkAsn1(hex::From(data, shape.elementsPosition), target);

  const QString& checksum = target.insured[Element::Checksum];
  const qsizetype checksumEnd = 2 * length + shape.checksumOffset;
  if (checksum.isEmpty() || hex::Value(checksum) != KvkXorChecksum(data, 1, checksumEnd)) {
    return Refuse(target, u" Prüfsumme KVK korrupt!!! ");
  }
  if (!target.info.IsMobile()) return KvkResult::Read;

  const QString& supplement = target.insured[Element::ChecksumSupplement];
  if (supplement.isEmpty()) return Refuse(target, u" Prüfsummezusatz KVK korrupt!!! ");
  const qsizetype rest = data.size() - 2 * (length + shape.headerBytes);
  if (rest != ShortSupplement && rest > LongestSupplement) {
    return Refuse(target, u" Unbekannte Länge Prüfsummezusatz KVK! ");
  }
  const quint8 sum = KvkXorChecksum(data, data.size() - rest + 1, data.size() - 3);
  if (hex::Value(supplement) != sum) return Refuse(target, u" Prüfsummezusatz KVK korrupt!!! ");
  return KvkResult::Read;
}

QChar KvkCharacterOf(quint8 byte) {
  switch (byte) {
    case 0x5B:
      return u'Ä';
    case 0x5C:
      return u'Ö';
    case 0x5D:
      return u'Ü';
    case 0x7B:
      return u'ä';
    case 0x7C:
      return u'ö';
    case 0x7D:
      return u'ü';
    case 0x7E:
      return u'ß';
    default:
      return CharacterOf(byte);
  }
}

QStringView WithoutBlanks(QStringView field) {
  constexpr QStringView Blank = u"20";
  while (field.size() >= 2 && field.first(2) == Blank) field = field.sliced(2);
  while (field.size() >= 2 && field.last(2) == Blank) field = field.chopped(2);
  return field;
}

}  // namespace

QStringView OutputFormatText(KvkForm form) {
  switch (form) {
    case KvkForm::Template60:
    case KvkForm::Template6081:
    case KvkForm::Template6082:
      return output_medium::PcAsn1;
    case KvkForm::Fixed:
      return output_medium::PcFixedFormat;
    case KvkForm::Unknown:
      break;
  }
  return output_medium::PcUnknownFormat;
}

KvkResult ReadKvk(QStringView data, const KvkTarget& target) {
  if (!HasAcceptedLength(data, target.info.IsMobile())) {
    return Refuse(target, u" Keine Krankenversichertenkarte!!! ");
  }
  const KvkForm form = FormOf(data);
  target.info.DisplayText = OutputFormatText(form);
  if (form != KvkForm::Fixed) return ReadTemplate(data, ShapeOf(form), target);
  ParseKvkFixed(data, target);
  return KvkResult::Read;
}

void ParseKvkAsn1(QStringView elements, const KvkTarget& target) {
  InsuredData found;
  qsizetype position = 1;
  for (int count = 0; count < ElementCount && position < elements.size(); ++count) {
    const quint8 tag = hex::ByteAt(elements, position);
    const qsizetype length = 2 * qsizetype{hex::ByteAt(elements, position + 2)};
    const QStringView value = hex::Mid(elements, position + 4, length);
    position += 4 + length;

    const auto element = ElementOfTag(tag);
    if (!element) {
      target.dialogs.Tell(Icon::Exclamation, QStringLiteral(" KartoCheck KVK lesen "),
                          QStringLiteral("Defekter KVK Datensatz!!!"));
      break;
    }
    if (IsBinary(*element)) {
      found[*element] = value.isEmpty() ? QStringLiteral("00") : value.toString();
    } else {
      found[*element] = HexToKvkText(value);
    }
    constexpr qsizetype ShortApprovalNumber = 2 * 3;
    if (element == Element::ApprovalNumber && value.size() == ShortApprovalNumber) {
      CorrectModel(found[*element], KvkFormat::Template, target.pn, target.info);
    }
  }
  target.insured.Store(found, target.info.IsMobile());
}

void ParseKvkFixed(QStringView data, const KvkTarget& target) {
  if (data.size() != CardLength && data.size() != SupplementLength &&
      data.size() != LongRecordLength) {
    return;
  }
  const int count = target.info.IsMobile() ? ElementCount : CardElementCount;
  InsuredData found;
  qsizetype position = 1;
  for (int i = 0; i < count; ++i) {
    const auto element = static_cast<Element>(i);
    const ElementDescription& description = ElementTable[static_cast<std::size_t>(i)];
    const bool isLong = element == Element::ApprovalNumber && data.size() == LongRecordLength;
    const qsizetype length = 2 * (isLong ? LongApprovalNumberWidth : description.width);
    const QStringView field = hex::Mid(data, position, length);
    position += length;
    found[element] = description.kind == FieldKind::Binary ? field.toString()
                                                           : HexToKvkText(WithoutBlanks(field));
  }
  target.insured.Store(found, target.info.IsMobile());
  if (target.info.IsMobile() && data.size() == SupplementLength) {
    CorrectModel(found[Element::ApprovalNumber], KvkFormat::Fixed, target.pn, target.info);
  }
}

QString HexToKvkText(QStringView hexText) {
  QString text(hexText.size() / 2, Qt::Uninitialized);
  qsizetype position = 1;
  for (QChar& character : text) {
    character = KvkCharacterOf(hex::ByteAt(hexText, position));
    position += 2;
  }
  return text;
}

quint8 KvkXorChecksum(QStringView data, qsizetype first, qsizetype last) {
  return hex::Xor(data, first, last);
}

}  // namespace kartocheck
