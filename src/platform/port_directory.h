#pragma once

#include <QString>
#include <QStringList>

#include <vector>

#include "platform/port.h"
#include "protocol/port_info.h"

namespace kartocheck {

using ctapi::PortTroubleKind;

// What keeps a port, or every card reader, from being used.
struct PortTrouble {
  PortTroubleKind Kind = PortTroubleKind::None;
  QStringList Devices{};  // NotPermitted: the files that this user may not open,
  QString Group{};        // and the group that may; empty where there is none

  friend bool operator==(const PortTrouble&, const PortTrouble&) = default;
};

// What is known of the devices behind the ports.
class PortDirectory {
 public:
  // How the device on the port is called: USB vendor, product and serial number, or a reader's full
  // name. Empty where it is not known.
  [[nodiscard]] virtual QString IdentificationOf(Port port) const = 0;

  [[nodiscard]] virtual PortTrouble TroubleOf(Port port) const = 0;

  // Why no card reader was found, the nearest reason first. Empty where nothing is known to be in
  // the way.
  [[nodiscard]] virtual std::vector<PortTrouble> TroublesWithoutReader() const = 0;

  virtual ~PortDirectory() = default;
  PortDirectory(const PortDirectory&) = delete;
  PortDirectory& operator=(const PortDirectory&) = delete;

 protected:
  PortDirectory() = default;
};

}  // namespace kartocheck
