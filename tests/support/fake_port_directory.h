#pragma once

#include <QMap>

#include "platform/port_directory.h"

namespace kartocheck::test {

// Knows of the ports what a test tells it, by port number.
class FakePortDirectory final : public PortDirectory {
 public:
  [[nodiscard]] QString IdentificationOf(int pn) const override {
    return identifications.value(pn);
  }
  [[nodiscard]] QString HintFor(int pn) const override { return hints.value(pn); }
  [[nodiscard]] QStringList HintsWithoutReader() const override { return hintsWithoutReader; }

  QMap<int, QString> identifications;
  QMap<int, QString> hints;
  QStringList hintsWithoutReader;
};

}  // namespace kartocheck::test
