#include "protocol/windows/com_devices.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <devguid.h>
#include <setupapi.h>
#include <system_error>

#include "protocol/windows/wide_text.h"

namespace ctapi {

namespace {

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

// The four digits behind a word such as "VID_".
std::string DigitsBehind(std::string_view text, std::string_view word) {
  constexpr std::size_t Digits = 4;
  const std::size_t at = text.find(word);
  return at == std::string_view::npos ? "" : std::string(text.substr(at + word.size(), Digits));
}

// The last part of a USB device's name is its serial number, or one of the system's making, which
// has '&' in it and tells the socket. The driver of a maker that has a bus of its own puts it third
// behind plus signs.
std::string SerialOf(std::string_view instance) {
  const std::size_t plus = instance.rfind('+');
  if (plus != std::string_view::npos) {
    const std::string_view rest = instance.substr(plus + 1);
    return std::string(rest.substr(0, rest.find('\\')));
  }
  const std::string_view last = instance.substr(instance.rfind('\\') + 1);
  return last.find('&') == std::string_view::npos ? std::string(last) : std::string();
}

// A list of devices of the system's setup library.
class DeviceList {
 public:
  DeviceList()
      : list_(::SetupDiGetClassDevsW(&GUID_DEVCLASS_PORTS, nullptr, nullptr, DIGCF_PRESENT)) {}
  ~DeviceList() {
    if (IsOpen()) ::SetupDiDestroyDeviceInfoList(list_);
  }
  DeviceList(const DeviceList&) = delete;
  DeviceList& operator=(const DeviceList&) = delete;

  [[nodiscard]] std::optional<SP_DEVINFO_DATA> At(DWORD index) const {
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof device;
    const bool isThere = IsOpen() && ::SetupDiEnumDeviceInfo(list_, index, &device);
    return isThere ? std::optional(device) : std::nullopt;
  }

  [[nodiscard]] std::string InstanceOf(SP_DEVINFO_DATA& device) const {
    std::wstring text(MaximumLength, L'\0');
    DWORD length = 0;
    if (!::SetupDiGetDeviceInstanceIdW(list_, &device, text.data(), MaximumLength, &length)) {
      return {};
    }
    return Utf8Text(text.c_str());
  }

  [[nodiscard]] std::string TextOf(SP_DEVINFO_DATA& device, DWORD property) const {
    std::wstring text(MaximumLength, L'\0');
    if (!::SetupDiGetDeviceRegistryPropertyW(list_, &device, property, nullptr,
                                             reinterpret_cast<BYTE*>(text.data()), Bytes,
                                             nullptr)) {
      return {};
    }
    return Utf8Text(text.c_str());
  }

  [[nodiscard]] std::string PortNameOf(SP_DEVINFO_DATA& device) const {
    const HKEY key =
        ::SetupDiOpenDevRegKey(list_, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE);
    if (key == INVALID_HANDLE_VALUE) return {};
    std::wstring text(MaximumLength, L'\0');
    DWORD bytes = Bytes;
    const LSTATUS result =
        ::RegGetValueW(key, nullptr, L"PortName", RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
    ::RegCloseKey(key);
    return result == ERROR_SUCCESS ? Utf8Text(text.c_str()) : std::string();
  }

 private:
  static constexpr DWORD MaximumLength = 512;
  static constexpr DWORD Bytes = (MaximumLength - 1) * sizeof(wchar_t);

  [[nodiscard]] bool IsOpen() const { return list_ != INVALID_HANDLE_VALUE; }

  HDEVINFO list_;
};

using Identifications = std::map<int, std::string>;  // by number

Identifications FindIdentifications() {
  Identifications found;
  const DeviceList list;
  for (DWORD index = 0; auto device = list.At(index); ++index) {
    const std::optional<int> number = ComNumberOf(list.PortNameOf(*device));
    if (!number) continue;
    found[*number] = UsbIdentification(list.InstanceOf(*device), list.TextOf(*device, SPDRP_MFG),
                                       list.TextOf(*device, SPDRP_DEVICEDESC));
  }
  return found;
}

// Where the drivers of serial ports write, when they start, which port each device is.
std::vector<int> FindStartedPorts() {
  std::vector<int> numbers;
  HKEY key = nullptr;
  if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_QUERY_VALUE,
                      &key) != ERROR_SUCCESS) {
    return numbers;
  }
  constexpr DWORD Longest = 256;
  for (DWORD index = 0;; ++index) {
    std::wstring device(Longest, L'\0');
    std::wstring port(Longest, L'\0');
    DWORD deviceLength = Longest;
    DWORD type = REG_NONE;
    DWORD bytes = (Longest - 1) * sizeof(wchar_t);
    const LSTATUS result = ::RegEnumValueW(key, index, device.data(), &deviceLength, nullptr, &type,
                                           reinterpret_cast<BYTE*>(port.data()), &bytes);
    if (result == ERROR_MORE_DATA) continue;
    if (result != ERROR_SUCCESS) break;
    const std::optional<int> number = ComNumberOf(Utf8Text(port.c_str()));
    if (type == REG_SZ && number) numbers.push_back(*number);
  }
  ::RegCloseKey(key);
  return numbers;
}

}  // namespace

std::optional<int> ComNumberOf(std::string_view name) {
  constexpr std::string_view Prefix = "\\\\.\\";
  constexpr std::string_view Word = "COM";
  if (name.starts_with(Prefix)) name.remove_prefix(Prefix.size());
  if (Upper(name.substr(0, Word.size())) != Word) return std::nullopt;
  name.remove_prefix(Word.size());
  int number = 0;
  const char* const end = name.data() + name.size();
  const auto parsed = std::from_chars(name.data(), end, number);
  const bool isWhole = parsed.ec == std::errc() && parsed.ptr == end && number >= 1;
  return isWhole ? std::optional(number) : std::nullopt;
}

std::string UsbIdentification(std::string_view instance, std::string_view manufacturer,
                              std::string_view product) {
  const std::string name = Upper(instance);
  const std::string vendor = DigitsBehind(name, "VID_");
  if (vendor.empty()) return {};
  std::string text = "USB VID_" + vendor + " PID_" + DigitsBehind(name, "PID_");
  const std::string serial = SerialOf(instance);
  for (const std::string_view part : {std::string_view(serial), manufacturer, product}) {
    if (!part.empty()) text.append(1, ' ').append(part);
  }
  return text;
}

// The system has numbered the ports already.
std::vector<ComDevice> FindComDevices() {
  const Identifications identifications = FindIdentifications();
  std::vector<ComDevice> devices;
  for (const int number : FindStartedPorts()) {
    const auto known = identifications.find(number);
    devices.push_back(
        {.Path = "COM" + std::to_string(number),
         .BuiltInNumber = number,
         .Identification = known == identifications.end() ? std::string() : known->second});
  }
  return devices;
}

std::string DeviceFileOf(const std::string& path) {
  const std::optional<int> number = ComNumberOf(path);
  return number ? "COM" + std::to_string(*number) : path;
}

}  // namespace ctapi
