#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/port.h"

namespace kartocheck {

// CT-API port numbers: COM n is n, the i-th USB device of the driver (i from 0) is 8192 + i.
inline constexpr int FirstComPort = 1;
inline constexpr int LastComPort = 256;
inline constexpr int FirstUsbPort = 8192;
inline constexpr int LastUsbPort = 8447;

[[nodiscard]] constexpr bool IsUsbPort(int pn) {
  return pn >= FirstUsbPort && pn <= LastUsbPort;
}

// The number that users know a USB device by, from 1 on.
[[nodiscard]] constexpr int UsbDeviceNumber(int pn) {
  return pn - FirstUsbPort + 1;
}

// The slot, 1 to 5, of a port number (or of a larger slot number). A number below 1 is an error of
// the caller.
[[nodiscard]] constexpr int SlotOf(int pn) {
  return std::min(pn, SlotCount);
}

// One value per slot, indexed by slot number, 1 to 5. Throws std::out_of_range for any other.
template <typename T>
class PerSlot {
 public:
  T& operator[](int slot) { return values_.at(static_cast<std::size_t>(slot - 1)); }
  const T& operator[](int slot) const { return values_.at(static_cast<std::size_t>(slot - 1)); }

  auto begin() { return values_.begin(); }
  auto end() { return values_.end(); }
  auto begin() const { return values_.begin(); }
  auto end() const { return values_.end(); }

 private:
  std::array<T, SlotCount> values_{};
};

}  // namespace kartocheck
