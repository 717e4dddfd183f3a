#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Which serial device is COM n.
namespace ctapi::host {

using ComTable = std::map<int, std::string>;  // number from 1 on, device file

inline constexpr const char* ComTableVariable = "KARTOCHECK_COM_PORTS";

// The table that a program hands over, as in "1=/dev/ttyS0;2=/dev/ttyUSB0". Entries that are none
// are left out.
[[nodiscard]] ComTable ParseComTable(std::string_view text);

// A serial device of the machine.
struct ComDevice {
  std::string Path{};
  std::optional<int> BuiltInNumber{};  // 1 for the first built-in port; none for USB devices
  std::string Identification{};        // USB vendor, product, serial number and names
};

// COM n is the built-in port n where there is one; the free numbers from 1 on go to the USB devices
// in the order of their identification.
[[nodiscard]] ComTable MakeComTable(std::vector<ComDevice> devices);

// The devices behind which there is hardware. The folders are those of the system (sysfs, device
// files) but in tests.
[[nodiscard]] std::vector<ComDevice> FindComDevices(const std::string& ttyFolder = "/sys/class/tty",
                                                    const std::string& deviceFolder = "/dev");

}  // namespace ctapi::host
