#include "platform/serial_port_directory.h"

#include <utility>

#include "platform/serial_devices.h"

namespace kartocheck {

SerialPortDirectory::SerialPortDirectory(const std::vector<ctapi::ComDevice>& devices,
                                         ctapi::ComTable table)
    : table_(std::move(table)) {
  for (const ctapi::ComDevice& device : devices) {
    identifications_.emplace(ctapi::DeviceFileOf(device.Path), device.Identification);
  }
}

QString SerialPortDirectory::IdentificationOf(Port port) const {
  const auto entry = table_.find(port.Number());
  if (entry == table_.end()) return {};
  const auto known = identifications_.find(ctapi::DeviceFileOf(entry->second));
  return known == identifications_.end() ? QString() : QString::fromStdString(known->second);
}

PortTrouble SerialPortDirectory::TroubleOf(Port port) const {
  const auto entry = table_.find(port.Number());
  if (entry == table_.end() || IsAllowed(entry->second)) return {};
  return {.Kind = PortTroubleKind::NotPermitted,
          .Devices = {QString::fromStdString(entry->second)},
          .Group = GroupOfDevice(entry->second)};
}

// One for all devices of a group.
std::vector<PortTrouble> SerialPortDirectory::TroublesWithoutReader() const {
  std::map<QString, QStringList> refused;
  for (const auto& [number, device] : table_) {
    if (!IsAllowed(device)) refused[GroupOfDevice(device)].append(QString::fromStdString(device));
  }
  std::vector<PortTrouble> troubles;
  troubles.reserve(refused.size());
  for (const auto& [group, devices] : refused) {
    troubles.push_back({.Kind = PortTroubleKind::NotPermitted, .Devices = devices, .Group = group});
  }
  return troubles;
}

}  // namespace kartocheck
