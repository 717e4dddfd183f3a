#include "protocol/linux/device_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>

namespace ctapi {

namespace {

// Older serial programs tell each other by a lock file that they use a port. It has the name of the
// device file, by whatever link (/dev/serial/by-id) the port is known here, and begins with the
// number of the process. One whose process is gone counts for nothing.
bool HasLockFile(const std::string& path) {
  std::error_code error;
  const std::filesystem::path device = std::filesystem::canonical(path, error);
  if (error) return false;
  std::ifstream file("/var/lock/LCK.." + device.filename().string());
  long process = 0;
  if (!(file >> process) || process <= 0) return false;
  struct stat status{};
  return ::stat(("/proc/" + std::to_string(process)).c_str(), &status) == 0;
}

bool IsExclusive(const Descriptor& device) {
  int exclusive = 0;
  return ::ioctl(device.Number(), TIOCGEXCL, &exclusive) == 0 && exclusive != 0;
}

}  // namespace

Descriptor OpenDeviceFile(const std::string& path) {
  return Descriptor(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
}

bool MeansNoDevice(int error) {
  switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
    case ENOTDIR:
    case EIO:
      return true;
    default:
      return false;
  }
}

// Exclusive mode does not keep root out, and a lock only binds those who look for it; so both are
// looked for, and both are taken.
bool IsHeldByOther(const Descriptor& device, const std::string& path) {
  if (HasLockFile(path) || IsExclusive(device)) return true;
  if (::flock(device.Number(), LOCK_EX | LOCK_NB) != 0) return errno == EWOULDBLOCK;
  (void)::flock(device.Number(), LOCK_UN);
  return false;
}

bool TakeAlone(const Descriptor& device, const std::string& path) {
  if (HasLockFile(path) || IsExclusive(device)) return false;
  if (::flock(device.Number(), LOCK_EX | LOCK_NB) != 0) return false;
  return ::ioctl(device.Number(), TIOCEXCL) == 0;
}

void GiveBack(const Descriptor& device) {
  (void)::ioctl(device.Number(), TIOCNXCL);
}

}  // namespace ctapi
