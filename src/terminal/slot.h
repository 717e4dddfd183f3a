#pragma once

#include <array>
#include <cstddef>

#include "platform/port.h"

namespace kartocheck {

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
