#pragma once

#include <QStringView>

#include <ostream>
#include <vector>

#include "platform/port_directory.h"

namespace kartocheck::test {

// What is said of the card reader service by the names that it has on a system.
struct ReaderServiceHint {
  const char* sentence;
  PortTroubleKind trouble;
  QStringView hint;

  friend std::ostream& operator<<(std::ostream& out, const ReaderServiceHint& row) {
    return out << row.sentence;
  }
};

// Those of this system.
[[nodiscard]] std::vector<ReaderServiceHint> ReaderServiceHints();

}  // namespace kartocheck::test
