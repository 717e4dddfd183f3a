#include "platform/serial_devices.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace kartocheck {

namespace {

constexpr int BuiltInPorts = 32;

// A file descriptor that is closed at the end of its scope.
class Descriptor {
 public:
  explicit Descriptor(const QString& path)
      : number_(::open(QFile::encodeName(path).constData(),
                       O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  [[nodiscard]] int Number() const { return number_; }

 private:
  int number_;
};

// The kernel offers device files for built-in ports that do not exist; their type is 0.
bool HasHardware(const QString& name) {
  QFile type(u"/sys/class/tty/" + name + u"/type");
  return type.open(QIODevice::ReadOnly) && type.readAll().trimmed() != "0";
}

bool IsConsoleOrBuiltIn(QStringView name) {
  constexpr QStringView Prefix = u"tty";
  if (!name.startsWith(Prefix)) return name == u"console" || name == u"ptmx";
  QStringView rest = name.sliced(Prefix.size());
  if (rest.startsWith(u'S')) rest = rest.sliced(1);
  return rest == u"printk" ||
         std::all_of(rest.begin(), rest.end(), [](QChar character) { return character.isDigit(); });
}

// Whether it is worth while to ask for USB devices: that takes thousands of system calls, most of
// them on the kernel's 64 consoles.
bool HasOtherPorts() {
  const QStringList names =
      QDir(QStringLiteral("/sys/class/tty")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  return !std::all_of(names.begin(), names.end(), IsConsoleOrBuiltIn);
}

QString IdentificationOf(const QSerialPortInfo& info) {
  QStringList parts;
  if (info.hasVendorIdentifier() && info.hasProductIdentifier()) {
    parts.append(QString::asprintf("USB VID_%04X PID_%04X", info.vendorIdentifier(),
                                   info.productIdentifier()));
  }
  for (const QString& part : {info.serialNumber(), info.manufacturer(), info.description()}) {
    if (!part.isEmpty()) parts.append(part);
  }
  return parts.join(u' ');
}

DeviceState StateOfError(int error) {
  switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
    case EIO:
      return DeviceState::Absent;
    case EBUSY:
      return DeviceState::InUse;
    case EACCES:
    case EPERM:
      return DeviceState::NotAllowed;
    default:
      return DeviceState::Failed;
  }
}

// Exclusive mode does not keep root out, and a lock only binds those who look for it; both tell
// that another program works with the port.
bool IsHeld(int descriptor) {
  int exclusive = 0;
  if (::ioctl(descriptor, TIOCGEXCL, &exclusive) == 0 && exclusive != 0) return true;
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) return errno == EWOULDBLOCK;
  ::flock(descriptor, LOCK_UN);
  return false;
}

// The lock file by which serial programs tell each other that they use a port. The first line is
// the number of the process; one that is gone counts for nothing.
bool HasLockFile(const QString& path) {
  QFile lock(u"/var/lock/LCK.." + QFileInfo(DeviceFileOf(path)).fileName());
  if (!lock.open(QIODevice::ReadOnly)) return false;
  bool isNumber = false;
  const int process = lock.readLine().trimmed().toInt(&isNumber);
  return isNumber && process > 0 && QFileInfo::exists(u"/proc/" + QString::number(process));
}

}  // namespace

std::vector<SerialDevice> FindSerialDevices() {
  std::vector<SerialDevice> devices;
  for (int i = 0; i < BuiltInPorts; ++i) {
    const QString name = u"ttyS" + QString::number(i);
    if (HasHardware(name)) {
      devices.push_back({.path = u"/dev/" + name, .builtInNumber = i + 1, .identification = {}});
    }
  }
  if (!HasOtherPorts()) return devices;
  for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
    // Built-in ports on a PCI card have a vendor too.
    if (!info.hasVendorIdentifier() || info.portName().startsWith(u"ttyS")) continue;
    devices.push_back({.path = info.systemLocation(),
                       .builtInNumber = {},
                       .identification = IdentificationOf(info)});
  }
  return devices;
}

DeviceState StateOfDevice(const QString& path) {
  const Descriptor device(path);
  if (!device.IsOpen()) return StateOfError(errno);
  termios settings{};
  if (::tcgetattr(device.Number(), &settings) != 0) return StateOfError(errno);
  return IsHeld(device.Number()) || HasLockFile(path) ? DeviceState::InUse : DeviceState::Free;
}

bool IsAllowed(const QString& path) {
  return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), R_OK | W_OK, AT_EACCESS) == 0 ||
         errno != EACCES;
}

QString GroupOfDevice(const QString& path) {
  constexpr mode_t GroupMayOpen = S_IRGRP | S_IWGRP;
  struct stat status{};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
  if ((status.st_mode & GroupMayOpen) != GroupMayOpen) return {};
  const group* entry = ::getgrgid(status.st_gid);
  return entry == nullptr ? QString() : QString::fromLocal8Bit(entry->gr_name);
}

}  // namespace kartocheck
