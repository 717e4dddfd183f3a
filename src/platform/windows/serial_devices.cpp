#include "platform/serial_devices.h"

#include <windows.h>

#include "platform/windows/handle.h"

namespace kartocheck {

namespace {

DeviceState StateOfError(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return DeviceState::Absent;
    // A port has no rights of its own: it is refused because somebody has it.
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      return DeviceState::InUse;
    default:
      return DeviceState::Failed;
  }
}

// In the namespace of devices: COM10 and above are found nowhere else.
QString DeviceName(const QString& path) {
  return path.startsWith(u"\\\\") ? path : QString(u"\\\\.\\" + path);
}

}  // namespace

DeviceState StateOfDevice(const std::string& path) {
  const std::wstring name = DeviceName(QString::fromStdString(path)).toStdWString();
  const Handle device = FileHandle(::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                                 nullptr, OPEN_EXISTING, 0, nullptr));
  if (device == nullptr) return StateOfError(::GetLastError());
  DCB settings{};
  settings.DCBlength = sizeof settings;
  return ::GetCommState(device.get(), &settings) != 0 ? DeviceState::Free : DeviceState::Failed;
}

bool IsAllowed(const std::string& /*path*/) {
  return true;
}

QString GroupOfDevice(const std::string& /*path*/) {
  return {};
}

}  // namespace kartocheck
