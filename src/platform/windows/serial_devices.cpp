#include "platform/serial_devices.h"

#include "protocol/windows/com_line.h"

namespace kartocheck {

// A port has no rights of its own: one that is refused is in use.
DeviceState StateOfDevice(const std::string& path) {
  const ctapi::OpenedComLine opened = ctapi::ComLine::Open(path);
  if (opened.Line != nullptr) return DeviceState::Free;
  if (ctapi::MeansNoComPort(opened.Error)) return DeviceState::Absent;
  return ctapi::MeansComPortInUse(opened.Error) ? DeviceState::InUse : DeviceState::Failed;
}

bool IsAllowed(const std::string& /*path*/) {
  return true;
}

QString GroupOfDevice(const std::string& /*path*/) {
  return {};
}

}  // namespace kartocheck
