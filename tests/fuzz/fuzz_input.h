#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kartocheck::fuzz {

// A property that every input must keep; breaking it is a finding.
inline void Require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", property);
  std::abort();
}

}  // namespace kartocheck::fuzz
