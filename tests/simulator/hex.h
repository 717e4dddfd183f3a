#pragma once

#include <concepts>
#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace ctapi::test {

// Bytes as upper-case hexadecimal digits, the way expected values are written in these tests.
inline std::string ToHex(std::span<const std::uint8_t> bytes) {
  constexpr const char* Digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += Digits[byte >> 4];
    text += Digits[byte & 0x0F];
  }
  return text;
}

// The name of a table row, taken from its Name field: letters, digits and _ only.
template <typename Row>
std::string RowName(const testing::TestParamInfo<Row>& info) {
  return info.param.Name;
}

// A row is printed by its name. Each test file with rows has a using-declaration for this.
template <typename Row>
  requires requires(const Row& row) {
    { row.Name } -> std::convertible_to<std::string>;
  }
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.Name;
}

}  // namespace ctapi::test
