#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "protocol/insured_elements.h"
#include "simulator/bytes.h"

// The data of a KVK as a terminal delivers them.
namespace ctapi {

// What is delivered, as UTF-8 text: an element that is not in it is not delivered, one with an
// empty text is delivered with length 0. Checksums are not told here but by a CheckByte.
using KvkElements = std::map<Element, std::string>;

enum class KvkForm {
  Automatic,  // the shorter of 60 and 6081
  Short60,    // length in one byte, at most 127
  Long6081,   // length in one byte
  Long6082,   // length in two bytes
  Fixed219,   // fixed format: the elements of the card
  Fixed231,   // and the supplement, with the short approval number
  Fixed255,   // and the supplement, with the long approval number
};

// How a check byte is written: as the record demands, not at all, as an element of length 0, or
// with a value of the caller's.
struct CheckByte {
  enum class Kind { Computed, Absent, Empty, Given };
  Kind How = Kind::Computed;
  std::uint8_t Value = 0;
};

// Appends the check object; the computed check is the XOR of everything before its value byte.
void AppendCheckObject(Bytes& bytes, std::uint8_t tag, CheckByte check);

// What a mobile terminal appends to a record that it stores.
struct KvkSupplement {
  KvkElements Elements{};
  CheckByte Check{};
};

// One record of the card's elements and the supplement's. Throws std::invalid_argument where they
// do not fit the form: a text that DIN 66003 cannot write, a template longer than its length field,
// a text wider than its fixed field, a supplement for Fixed219; and for an element that stands in
// the wrong part or is a checksum.
[[nodiscard]] Bytes BuildKvk(const KvkElements& elements, KvkForm form = KvkForm::Automatic,
                             CheckByte check = {},
                             const std::optional<KvkSupplement>& supplement = std::nullopt);

// UTF-8 text in the German variant of ISO 646 (DIN 66003), one byte a character. Throws
// std::invalid_argument for a character that it does not have.
[[nodiscard]] Bytes Din66003(std::string_view text);

}  // namespace ctapi
