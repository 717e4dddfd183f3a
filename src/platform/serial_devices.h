#pragma once

#include <QString>

#include <string>

namespace kartocheck {

// Whether a device can be opened, as the operating system tells.
enum class DeviceState {
  Free,
  Absent,      // no such device, or a placeholder without hardware
  InUse,       // held by another program, by lock or exclusive mode
  NotAllowed,  // the user lacks the permission
  Failed,      // anything else
};

[[nodiscard]] DeviceState StateOfDevice(const std::string& path);

// Whether the device's permissions let this user open it. Opens nothing, since that would raise the
// line's signals; true where there is no such device.
[[nodiscard]] bool IsAllowed(const std::string& path);

// Name of the group that may open the device; empty where there is none or its name is not known.
[[nodiscard]] QString GroupOfDevice(const std::string& path);

}  // namespace kartocheck
