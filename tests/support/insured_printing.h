#pragma once

#include <ostream>

#include "kvk/insured_data.h"

namespace kartocheck {

// The elements that have a text, by key.
inline void PrintTo(const InsuredData& insured, std::ostream* out) {
  for (const ElementDescription& element : ElementTable) {
    const QString& text = insured[element.Which];
    if (!text.isEmpty()) *out << element.Key << "=\"" << text.toStdString() << "\" ";
  }
}

}  // namespace kartocheck
