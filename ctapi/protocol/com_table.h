#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Which serial device is COM n.
namespace ctapi {

// Number from 1 on, and the device file or, on Windows, the system's name of the port ("COM3").
using ComTable = std::map<int, std::string>;

// The environment variable by which a program hands its table to the CT-API library.
inline constexpr const char* ComTableVariable = "KARTOCHECK_COM_PORTS";

// A table as text, as in "1=/dev/ttyS0;2=/dev/ttyUSB0". Read back, entries that are none are left
// out.
[[nodiscard]] std::string ComTableText(const ComTable& table);
[[nodiscard]] ComTable ParseComTable(std::string_view text);

// A serial device of the machine.
struct ComDevice {
  std::string Path{};  // as in a ComTable
  // 1 for the first built-in port; none for USB devices, but on Windows, which numbers them all.
  std::optional<int> BuiltInNumber{};
  std::string Identification{};  // USB vendor, product, serial number and names
};

// The devices behind which there is hardware, in no particular order.
[[nodiscard]] std::vector<ComDevice> FindComDevices();

// The device file that a path leads to: devices are known by links as well, on Windows by names in
// other letters. The path itself where there is no such file.
[[nodiscard]] std::string DeviceFileOf(const std::string& path);

// COM n is the built-in port n where there is one; the free numbers from 1 on go to the USB devices
// in the order of their identification. Overrides come first: their number is taken, and their
// device gets no other, by whatever link it is named.
[[nodiscard]] ComTable MakeComTable(const std::vector<ComDevice>& devices,
                                    const ComTable& overrides = {});

}  // namespace ctapi
