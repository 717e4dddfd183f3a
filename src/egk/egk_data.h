#pragma once

namespace kartocheck {

// What the eGK reads keep of a slot besides the InsuredData row.
struct EgkData {
  [[nodiscard]] bool IsEmpty() const { return true; }
};

}  // namespace kartocheck
