#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/port_directory.h"
#include "protocol/com_table.h"

namespace kartocheck {

// What the system knows of the machine's serial ports.
class SerialPortDirectory final : public PortDirectory {
 public:
  SerialPortDirectory(const std::vector<ctapi::ComDevice>& devices, ctapi::ComTable table);

  [[nodiscard]] QString IdentificationOf(Port port) const override;
  [[nodiscard]] PortTrouble TroubleOf(Port port) const override;
  [[nodiscard]] std::vector<PortTrouble> TroublesWithoutReader() const override;

 private:
  ctapi::ComTable table_;
  std::map<std::string, std::string> identifications_;  // by device file
};

}  // namespace kartocheck
