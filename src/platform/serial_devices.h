#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>
#include <vector>

namespace kartocheck {

// A serial device of the machine.
struct SerialDevice {
  QString path;                      // device file, e.g. /dev/ttyUSB0
  std::optional<int> builtInNumber;  // 1 for the first built-in port; none for USB devices
  QString identification;  // USB vendor, product and serial number; empty for built-in ports
};

// Which device is COM n: number to device file.
using ComTable = QMap<int, QString>;

// The serial devices behind which there is hardware, in no particular order.
[[nodiscard]] std::vector<SerialDevice> FindSerialDevices();

// The device file that a path leads to: devices are known by links as well (/dev/serial/by-id).
[[nodiscard]] QString DeviceFileOf(const QString& path);

// COM n is the built-in port n where there is one; the free numbers from 1 on go to the USB devices
// in the order of their identification. Overrides come first: their number is taken, and their
// device gets no other, by whatever link it is named.
[[nodiscard]] ComTable MakeComTable(const std::vector<SerialDevice>& devices,
                                    const ComTable& overrides);

// Name of the environment variable that hands the table to the CT-API library, and its value:
// "1=/dev/ttyS0;2=/dev/ttyUSB0".
inline constexpr const char* ComTableVariable = "KARTOCHECK_COM_PORTS";
[[nodiscard]] QByteArray ComTableText(const ComTable& table);

// Whether a device can be opened, as the operating system tells.
enum class DeviceState {
  Free,
  Absent,      // no such device, or a placeholder without hardware
  InUse,       // held by another program, by lock or exclusive mode
  NotAllowed,  // the user lacks the permission
  Failed,      // anything else
};

[[nodiscard]] DeviceState StateOfDevice(const QString& path);

// Whether the device's permissions let this user open it. Opens nothing, since that would raise the
// line's signals; true where there is no such device.
[[nodiscard]] bool IsAllowed(const QString& path);

// Name of the group that may open the device; empty where there is none or its name is not known.
[[nodiscard]] QString GroupOfDevice(const QString& path);

}  // namespace kartocheck
