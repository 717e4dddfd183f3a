#pragma once

#include <cstdio>
#include <cstdlib>

namespace kartocheck::fuzz {

// A finding, where the condition does not hold.
inline void Verify(bool condition, const char* expectation) {
  if (condition) return;
  std::fprintf(stderr, "does not hold: %s\n", expectation);
  std::abort();
}

}  // namespace kartocheck::fuzz
