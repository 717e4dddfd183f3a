#include "platform/machine_port_directory.h"

#include <utility>

namespace kartocheck {

MachinePortDirectory::MachinePortDirectory(std::unique_ptr<const PortDirectory> serialPorts,
                                           AskLibrary askLibrary)
    : serialPorts_(std::move(serialPorts)), askLibrary_(std::move(askLibrary)) {}

QString MachinePortDirectory::IdentificationOf(Port port) const {
  if (!port.IsUsb()) return serialPorts_->IdentificationOf(port);
  return QString::fromStdString(askLibrary_(port.Number()).Name);
}

PortTrouble MachinePortDirectory::TroubleOf(Port port) const {
  if (!port.IsUsb()) return serialPorts_->TroubleOf(port);
  return {.Kind = askLibrary_(port.Number()).Trouble};
}

std::vector<PortTrouble> MachinePortDirectory::TroublesWithoutReader() const {
  std::vector<PortTrouble> troubles = serialPorts_->TroublesWithoutReader();
  const PortTroubleKind ofReaders = askLibrary_(ctapi::EveryReader).Trouble;
  if (ofReaders != PortTroubleKind::None) troubles.push_back({.Kind = ofReaders});
  return troubles;
}

}  // namespace kartocheck
