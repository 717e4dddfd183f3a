#pragma once

#include <string>

#include "protocol/linux/descriptor.h"

// The file of a serial device, and the rule by which the programs of a machine keep off each
// other's: a lock file, a lock on the device file, exclusive mode.
namespace ctapi {

// Opens the file for reading and writing without waiting. Not open: errno tells why.
[[nodiscard]] Descriptor OpenDeviceFile(const std::string& path);

// Whether an error of opening says that there is no such device or no hardware behind it.
[[nodiscard]] bool MeansNoDevice(int error);

// Whether another program holds the device. Leaves it as it is.
[[nodiscard]] bool IsHeldByOther(const Descriptor& device, const std::string& path);

// Takes the device for this program alone; false where another one holds it.
[[nodiscard]] bool TakeAlone(const Descriptor& device, const std::string& path);
// The lock ends with the descriptor; exclusive mode would outlive it on a device still open
// elsewhere.
void GiveBack(const Descriptor& device);

}  // namespace ctapi
