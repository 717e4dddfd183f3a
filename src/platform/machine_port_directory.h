#pragma once

#include <functional>
#include <memory>

#include "platform/port_directory.h"

namespace kartocheck {

// What is known of the machine's ports: of the USB devices what the CT-API library in use tells,
// since it is the one that numbers them, of the serial ports what the system does.
class MachinePortDirectory final : public PortDirectory {
 public:
  // Asks the library for a port number, or for 0: what keeps every reader from being used. One that
  // cannot tell, or that is not loaded yet, tells nothing.
  using AskLibrary = std::function<ctapi::PortInfo(int pn)>;

  MachinePortDirectory(std::unique_ptr<const PortDirectory> serialPorts, AskLibrary askLibrary);

  [[nodiscard]] QString IdentificationOf(Port port) const override;
  [[nodiscard]] PortTrouble TroubleOf(Port port) const override;
  [[nodiscard]] std::vector<PortTrouble> TroublesWithoutReader() const override;

 private:
  std::unique_ptr<const PortDirectory> serialPorts_;
  AskLibrary askLibrary_;
};

}  // namespace kartocheck
