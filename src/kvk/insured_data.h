#pragma once

#include <QString>

#include <array>
#include <cstddef>

#include "protocol/insured_elements.h"

namespace kartocheck {

using ctapi::DescriptionOf;
using ctapi::Element;
using ctapi::ElementCount;
using ctapi::ElementDescription;
using ctapi::ElementPart;
using ctapi::ElementTable;
using ctapi::FieldKind;

// Whether a read finds the element: a mobile terminal's record has a supplement behind the card's
// elements.
[[nodiscard]] constexpr bool IsDelivered(const ElementDescription& element,
                                         bool fromMobileTerminal) {
  return element.Part == ElementPart::Card || fromMobileTerminal;
}

// One text an element; empty where it was not delivered.
class InsuredData {
 public:
  QString& operator[](Element element) { return texts_.at(static_cast<std::size_t>(element)); }
  const QString& operator[](Element element) const {
    return texts_.at(static_cast<std::size_t>(element));
  }

  [[nodiscard]] bool operator==(const InsuredData&) const = default;

  void Clear();
  [[nodiscard]] bool IsEmpty() const;

  // Takes over what a reader found: the card's elements, from a mobile terminal's record all.
  void Store(const InsuredData& found, bool fromMobileTerminal);

 private:
  std::array<QString, ElementCount> texts_;
};

}  // namespace kartocheck
