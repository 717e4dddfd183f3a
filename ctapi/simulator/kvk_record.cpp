#include "simulator/kvk_record.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "protocol/din66003.h"

namespace ctapi {

namespace {

constexpr std::uint8_t Template = 0x60;
constexpr std::uint8_t CheckTag = DescriptionOf(Element::Checksum).Tag;
constexpr std::uint8_t SupplementCheckTag = DescriptionOf(Element::ChecksumSupplement).Tag;
constexpr std::uint8_t Blank = 0x20;

constexpr std::size_t LongestShortForm = 0x7F;
constexpr std::size_t LongestOneByte = 0xFF;
constexpr std::size_t LongestTwoBytes = 0xFFFF;

// The table has the insured number before the VKNR, as the fixed format; the card behind it.
constexpr auto TemplateOrder = [] {
  auto order = ElementTable;
  const auto place = [&order](Element element) {
    return std::find_if(order.begin(), order.end(),
                        [element](const auto& row) { return row.Which == element; });
  };
  const auto vknr = place(Element::Vknr);
  std::rotate(place(Element::InsuredNumber), vknr, vknr + 1);
  return order;
}();

// What an ASCII character has at its code in DIN 66003 too.
bool IsCommonCharacter(char c) {
  return c >= ' ' && c <= '~' &&
         std::none_of(GermanCharacters.begin(), GermanCharacters.end(), [c](const auto& german) {
           return german.Code == static_cast<std::uint8_t>(c);
         });
}

void AppendCheckObject(Bytes& bytes, std::uint8_t tag, CheckByte check, std::uint8_t computed) {
  switch (check.How) {
    case CheckByte::Kind::Absent:
      return;
    case CheckByte::Kind::Empty:
      AppendObject(bytes, tag, ByteView{});
      return;
    case CheckByte::Kind::Computed:
    case CheckByte::Kind::Given: {
      const Bytes value{check.How == CheckByte::Kind::Given ? check.Value : computed};
      AppendObject(bytes, tag, value);
      return;
    }
  }
}

Bytes Header(KvkForm form, std::size_t length) {
  const bool fitsShort = length <= LongestShortForm;
  Bytes header{Template};
  if (form == KvkForm::Short60 || (form == KvkForm::Automatic && fitsShort)) {
    if (!fitsShort) throw std::invalid_argument("the template is too long for the form 60");
    header.push_back(static_cast<std::uint8_t>(length));
  } else if (form == KvkForm::Long6082) {
    if (length > LongestTwoBytes) throw std::invalid_argument("the template is too long");
    header.push_back(0x82);
    AppendBigEndian(header, length);
  } else {
    if (length > LongestOneByte) {
      throw std::invalid_argument("the template is too long for the form 6081");
    }
    header.push_back(0x81);
    header.push_back(static_cast<std::uint8_t>(length));
  }
  return header;
}

std::size_t LengthOfCheckObject(CheckByte check) {
  if (check.How == CheckByte::Kind::Absent) return 0;
  return check.How == CheckByte::Kind::Empty ? 2 : 3;
}

bool Holds(const ElementDescription& element, ElementPart part) {
  return element.Part == part && !element.IsChecksum();
}

void RefuseOthers(const KvkElements& elements, ElementPart part) {
  for (const auto& [element, text] : elements) {
    if (!Holds(DescriptionOf(element), part)) {
      throw std::invalid_argument("'" + std::string(DescriptionOf(element).Key) +
                                  "' is no element of this part of a record");
    }
  }
}

void AppendObjects(Bytes& bytes, const KvkElements& elements) {
  for (const ElementDescription& element : TemplateOrder) {
    const auto found = elements.find(element.Which);
    if (found != elements.end()) AppendObject(bytes, element.Tag, Din66003(found->second));
  }
}

Bytes BuildTemplate(const KvkElements& elements, KvkForm form, CheckByte check) {
  Bytes content;
  AppendObjects(content, elements);
  Bytes record = Header(form, content.size() + LengthOfCheckObject(check));
  Append(record, content);

  if (form == KvkForm::Long6082) {
    // In this form the check's range ends one byte early: the length of the check element itself
    // takes no part.
    const auto computed = static_cast<std::uint8_t>(XorOf(record) ^ CheckTag);
    AppendCheckObject(record, CheckTag, check, computed);
  } else {
    AppendCheckObject(record, CheckTag, check);
  }
  return record;
}

Bytes BuildSupplement(const KvkSupplement& supplement) {
  Bytes bytes;
  AppendObjects(bytes, supplement.Elements);
  AppendCheckObject(bytes, SupplementCheckTag, supplement.Check);
  return bytes;
}

void AppendField(Bytes& record, const std::string& text, int width) {
  const auto size = static_cast<std::size_t>(width);
  Bytes field = Din66003(text);
  if (field.size() > size) throw std::invalid_argument("'" + text + "' is wider than its field");
  field.resize(size, Blank);
  Append(record, field);
}

// The fields of one part, but for its checksum.
Bytes BuildFields(const KvkElements& elements, ElementPart part, bool inLongRecord = false) {
  Bytes fields;
  for (const ElementDescription& element : ElementTable) {
    if (!Holds(element, part)) continue;
    const auto found = elements.find(element.Which);
    AppendField(fields, found == elements.end() ? std::string() : found->second,
                FieldWidth(element, inLongRecord));
  }
  return fields;
}

void AppendCheckField(Bytes& record, CheckByte check, std::uint8_t computed) {
  if (check.How == CheckByte::Kind::Computed) {
    record.push_back(computed);
  } else {
    record.push_back(check.How == CheckByte::Kind::Given ? check.Value : Blank);
  }
}

Bytes BuildFixed(const KvkElements& elements, KvkForm form, CheckByte check,
                 const std::optional<KvkSupplement>& supplement) {
  Bytes record = BuildFields(elements, ElementPart::Card);
  AppendCheckField(record, check, XorOf(record));
  if (form == KvkForm::Fixed219) {
    if (supplement) throw std::invalid_argument("the fixed format of 219 bytes has no supplement");
    return record;
  }
  const KvkSupplement added = supplement.value_or(KvkSupplement{});
  Bytes fields = BuildFields(added.Elements, ElementPart::Supplement, form == KvkForm::Fixed255);
  AppendCheckField(fields, added.Check, XorOf(fields));
  Append(record, fields);
  return record;
}

}  // namespace

void AppendCheckObject(Bytes& bytes, std::uint8_t tag, CheckByte check) {
  constexpr std::uint8_t Length = 1;
  const auto computed = static_cast<std::uint8_t>(XorOf(bytes) ^ tag ^ Length);
  AppendCheckObject(bytes, tag, check, computed);
}

Bytes BuildKvk(const KvkElements& elements, KvkForm form, CheckByte check,
               const std::optional<KvkSupplement>& supplement) {
  RefuseOthers(elements, ElementPart::Card);
  if (supplement) RefuseOthers(supplement->Elements, ElementPart::Supplement);
  if (form == KvkForm::Fixed219 || form == KvkForm::Fixed231 || form == KvkForm::Fixed255) {
    return BuildFixed(elements, form, check, supplement);
  }
  Bytes record = BuildTemplate(elements, form, check);
  if (supplement) Append(record, BuildSupplement(*supplement));
  return record;
}

Bytes Din66003(std::string_view text) {
  Bytes bytes;
  while (!text.empty()) {
    const auto* const german =
        std::find_if(GermanCharacters.begin(), GermanCharacters.end(),
                     [text](const auto& character) { return text.starts_with(character.Utf8); });
    if (german != GermanCharacters.end()) {
      bytes.push_back(german->Code);
      text.remove_prefix(german->Utf8.size());
    } else if (IsCommonCharacter(text.front())) {
      bytes.push_back(static_cast<std::uint8_t>(text.front()));
      text.remove_prefix(1);
    } else {
      throw std::invalid_argument("'" + std::string(text) +
                                  "' begins with a character that DIN 66003 does not have");
    }
  }
  return bytes;
}

}  // namespace ctapi
