#include "kvk/kvk_reader.h"

#include <algorithm>
#include <optional>

#include "kvk/model_correction.h"
#include "protocol/din66003.h"
#include "text/code_page.h"
#include "text/hex_text.h"

namespace kartocheck {

namespace {

// Lengths in hexadecimal characters.
constexpr qsizetype LeastLength = 106;
constexpr qsizetype CardLength = 2 * ctapi::FixedCardLength;  // bound of a template too
constexpr qsizetype SupplementLength = 2 * ctapi::FixedRecordLength;
constexpr qsizetype LongRecordLength = 2 * ctapi::FixedLongRecordLength;
constexpr qsizetype MobileBound = 518;
constexpr qsizetype ShortSupplement = 36;
constexpr qsizetype LongestSupplement = 106;

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
  const auto* const row =
      std::find_if(ElementTable.begin(), ElementTable.end(),
                   [tag](const ElementDescription& element) { return element.Tag == tag; });
  if (row == ElementTable.end()) return std::nullopt;
  return row->Which;
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
  const auto* const german =
      std::find_if(ctapi::GermanCharacters.begin(), ctapi::GermanCharacters.end(),
                   [byte](const auto& character) { return character.Code == byte; });
  return german == ctapi::GermanCharacters.end() ? CharacterOf(byte) : QChar(german->Character);
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
    if (DescriptionOf(*element).Kind == FieldKind::Binary) {
      found[*element] = value.isEmpty() ? QStringLiteral("00") : value.toString();
    } else {
      found[*element] = HexToKvkText(value);
    }
    constexpr qsizetype ShortApprovalNumber = 2 * DescriptionOf(Element::ApprovalNumber).Width;
    if (element == Element::ApprovalNumber && value.size() == ShortApprovalNumber) {
      CorrectModel(found[*element], KvkFormat::Template, target.port, target.info);
    }
  }
  target.insured.Store(found, target.info.IsMobile());
}

void ParseKvkFixed(QStringView data, const KvkTarget& target) {
  if (data.size() != CardLength && data.size() != SupplementLength &&
      data.size() != LongRecordLength) {
    return;
  }
  InsuredData found;
  qsizetype position = 1;
  for (const ElementDescription& element : ElementTable) {
    if (!IsDelivered(element, target.info.IsMobile())) continue;
    const qsizetype length = 2 * FieldWidth(element, data.size() == LongRecordLength);
    const QStringView field = hex::Mid(data, position, length);
    position += length;
    found[element.Which] =
        element.Kind == FieldKind::Binary ? field.toString() : HexToKvkText(WithoutBlanks(field));
  }
  target.insured.Store(found, target.info.IsMobile());
  if (target.info.IsMobile() && data.size() == SupplementLength) {
    CorrectModel(found[Element::ApprovalNumber], KvkFormat::Fixed, target.port, target.info);
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
