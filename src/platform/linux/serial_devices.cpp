#include "platform/serial_devices.h"

#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "protocol/linux/device_lock.h"

namespace kartocheck {

namespace {

DeviceState StateOfError(int error) {
  if (ctapi::MeansNoDevice(error)) return DeviceState::Absent;
  switch (error) {
    case EBUSY:
      return DeviceState::InUse;
    case EACCES:
    case EPERM:
      return DeviceState::NotAllowed;
    default:
      return DeviceState::Failed;
  }
}

}  // namespace

DeviceState StateOfDevice(const std::string& path) {
  const ctapi::Descriptor device = ctapi::OpenDeviceFile(path);
  if (!device.IsOpen()) return StateOfError(errno);
  termios settings{};
  if (::tcgetattr(device.Number(), &settings) != 0) return StateOfError(errno);
  return ctapi::IsHeldByOther(device, path) ? DeviceState::InUse : DeviceState::Free;
}

bool IsAllowed(const std::string& path) {
  return ::faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK, AT_EACCESS) == 0 || errno != EACCES;
}

QString GroupOfDevice(const std::string& path) {
  constexpr mode_t GroupMayOpen = S_IRGRP | S_IWGRP;
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) return {};
  if ((status.st_mode & GroupMayOpen) != GroupMayOpen) return {};
  const group* entry = ::getgrgid(status.st_gid);
  return entry == nullptr ? QString() : QString::fromLocal8Bit(entry->gr_name);
}

}  // namespace kartocheck
