#include "host/com_table.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace ctapi::host {

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

ComTable MakeComTable(std::vector<ComDevice> devices) {
  std::sort(devices.begin(), devices.end(), [](const ComDevice& left, const ComDevice& right) {
    return std::tie(left.Identification, left.Path) < std::tie(right.Identification, right.Path);
  });
  ComTable table;
  for (const ComDevice& device : devices) {
    if (device.BuiltInNumber) table.emplace(*device.BuiltInNumber, device.Path);
  }
  int number = 1;
  for (const ComDevice& device : devices) {
    if (device.BuiltInNumber) continue;
    while (table.contains(number)) ++number;
    table.emplace(number, device.Path);
  }
  return table;
}

}  // namespace ctapi::host
