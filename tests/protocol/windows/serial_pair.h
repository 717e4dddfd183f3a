#pragma once

#include <cstdlib>
#include <string>

namespace ctapi::test {

// Two serial ports of this machine that lead to each other, by the environment variable
// KARTOCHECK_SERIAL_PAIR ("COM61,COM62"): two real ones with a null modem, two of a virtual driver,
// or those of support/serial_pair.py.
struct SerialPair {
  std::string Near{};  // empty: there is no pair
  std::string Far{};

  [[nodiscard]] bool Exists() const { return !Far.empty(); }
};

[[nodiscard]] inline SerialPair TheSerialPair() {
  const char* const text = std::getenv("KARTOCHECK_SERIAL_PAIR");
  const std::string names = text == nullptr ? "" : text;
  const std::size_t comma = names.find(',');
  if (comma == std::string::npos) return {};
  return {names.substr(0, comma), names.substr(comma + 1)};
}

}  // namespace ctapi::test
