#include "protocol/linux/com_devices.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>

namespace ctapi {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view BuiltIn = "ttyS";
constexpr int BuiltInPorts = 32;

std::string FirstLine(const fs::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line;
}

// Number of a built-in port from 1 on, by the name of its device. The kernel offers names for ports
// that do not exist; their type is 0.
std::optional<int> BuiltInNumber(const fs::path& tty) {
  const std::string name = tty.filename().string();
  if (!name.starts_with(BuiltIn)) return std::nullopt;
  int index = -1;
  const char* const end = name.data() + name.size();
  const auto parsed = std::from_chars(name.data() + BuiltIn.size(), end, index);
  if (parsed.ec != std::errc() || parsed.ptr != end || index < 0 || index >= BuiltInPorts) {
    return std::nullopt;
  }
  const std::string type = FirstLine(tty / "type");
  if (type.empty() || type == "0") return std::nullopt;
  return index + 1;
}

// What the USB device says of itself: the nearest folder above the serial device that names a
// vendor. Empty where the device hangs on no USB.
std::string UsbIdentification(const fs::path& tty) {
  std::error_code error;
  // Most are no devices at all. Their number makes it worth to ask before the way is gone.
  if (!fs::exists(tty / "device", error)) return {};
  fs::path folder = fs::canonical(tty / "device", error);
  if (error) return {};
  while (folder.has_relative_path() && !fs::exists(folder / "idVendor", error)) {
    folder = folder.parent_path();
  }
  if (!folder.has_relative_path()) return {};
  const auto upper = [&](const char* name) {
    std::string text = FirstLine(folder / name);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
  };
  std::string text = "USB VID_" + upper("idVendor") + " PID_" + upper("idProduct");
  for (const char* const name : {"serial", "manufacturer", "product"}) {
    const std::string part = FirstLine(folder / name);
    if (!part.empty()) text += ' ' + part;
  }
  return text;
}

}  // namespace

std::vector<ComDevice> FindComDevices() {
  return FindComDevicesIn("/sys/class/tty", "/dev");
}

std::vector<ComDevice> FindComDevicesIn(const std::string& ttyFolder,
                                        const std::string& deviceFolder) {
  std::vector<ComDevice> devices;
  std::error_code error;
  for (fs::directory_iterator entry(ttyFolder, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path& tty = entry->path();
    ComDevice device{.Path = deviceFolder + '/' + tty.filename().string(),
                     .BuiltInNumber = BuiltInNumber(tty)};
    if (!device.BuiltInNumber) device.Identification = UsbIdentification(tty);
    if (device.BuiltInNumber || !device.Identification.empty()) devices.push_back(device);
  }
  return devices;
}

std::string DeviceFileOf(const std::string& path) {
  std::error_code error;
  const fs::path file = fs::canonical(path, error);
  return error ? path : file.string();
}

}  // namespace ctapi
