#include "kvk/insured_data.h"

#include <algorithm>

namespace kartocheck {

void InsuredData::Clear() {
  texts_.fill(QString());
}

bool InsuredData::IsEmpty() const {
  return std::all_of(texts_.begin(), texts_.end(),
                     [](const QString& text) { return text.isEmpty(); });
}

void InsuredData::Store(const InsuredData& found, bool fromMobileTerminal) {
  for (const ElementDescription& element : ElementTable) {
    if (IsDelivered(element, fromMobileTerminal)) (*this)[element.Which] = found[element.Which];
  }
}

}  // namespace kartocheck
