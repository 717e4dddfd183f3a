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
  const int count = fromMobileTerminal ? ElementCount : CardElementCount;
  std::copy_n(found.texts_.begin(), count, texts_.begin());
}

}  // namespace kartocheck
