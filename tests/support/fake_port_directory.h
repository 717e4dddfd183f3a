#pragma once

#include <QMap>

#include "platform/port_directory.h"

namespace kartocheck::test {

inline const PortTrouble CardHeld{.Kind = PortTroubleKind::CardHeld};
inline const PortTrouble NoService{.Kind = PortTroubleKind::NoService};
inline const PortTrouble NotPermitted{
    .Kind = PortTroubleKind::NotPermitted,
    .Devices = {QStringLiteral("/dev/ttyS0"), QStringLiteral("/dev/ttyUSB0")},
    .Group = QStringLiteral("dialout")};

// Knows of the ports what a test tells it, by port number.
class FakePortDirectory final : public PortDirectory {
 public:
  [[nodiscard]] QString IdentificationOf(Port port) const override {
    return identifications.value(port.Number());
  }
  [[nodiscard]] PortTrouble TroubleOf(Port port) const override {
    return troubles.value(port.Number());
  }
  [[nodiscard]] std::vector<PortTrouble> TroublesWithoutReader() const override {
    return troublesWithoutReader;
  }

  QMap<int, QString> identifications;
  QMap<int, PortTrouble> troubles;
  std::vector<PortTrouble> troublesWithoutReader;
};

}  // namespace kartocheck::test
