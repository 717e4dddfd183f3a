#include "protocol/com_table.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <system_error>
#include <tuple>

namespace ctapi {

std::string ComTableText(const ComTable& table) {
  std::string text;
  for (const auto& [number, device] : table) {
    if (!text.empty()) text += ';';
    text += std::to_string(number) + '=' + device;
  }
  return text;
}

ComTable ParseComTable(std::string_view text) {
  ComTable table;
  while (!text.empty()) {
    const std::string_view entry = text.substr(0, text.find(';'));
    text.remove_prefix(std::min(text.size(), entry.size() + 1));
    const std::size_t sign = entry.find('=');
    if (sign == std::string_view::npos || sign + 1 == entry.size()) continue;
    int number = 0;
    const char* const end = entry.data() + sign;
    const auto parsed = std::from_chars(entry.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end || number < 1) continue;
    table.emplace(number, entry.substr(sign + 1));
  }
  return table;
}

ComTable MakeComTable(const std::vector<ComDevice>& devices, const ComTable& overrides) {
  ComTable table = overrides;
  std::set<std::string> taken;
  for (const auto& [number, path] : overrides) taken.insert(DeviceFileOf(path));
  std::vector<ComDevice> others;
  for (const ComDevice& device : devices) {
    if (!taken.empty() && taken.contains(DeviceFileOf(device.Path))) continue;
    if (device.BuiltInNumber) {
      table.emplace(*device.BuiltInNumber, device.Path);
    } else {
      others.push_back(device);
    }
  }
  std::sort(others.begin(), others.end(), [](const ComDevice& left, const ComDevice& right) {
    return std::tie(left.Identification, left.Path) < std::tie(right.Identification, right.Path);
  });
  int number = 1;
  for (const ComDevice& device : others) {
    while (table.contains(number)) ++number;
    table.emplace(number, device.Path);
  }
  return table;
}

}  // namespace ctapi
