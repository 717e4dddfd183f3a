#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace kartocheck::bench {

// Shortest time of one call, in microseconds: the best of `rounds` rounds of `calls` calls.
template <typename Call>
[[nodiscard]] double MicrosecondsOf(Call call, int rounds = 20, int calls = 2'000) {
  using Clock = std::chrono::steady_clock;
  double best = std::numeric_limits<double>::max();
  for (int round = 0; round < rounds; ++round) {
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i) call();
    const std::chrono::duration<double, std::micro> taken = Clock::now() - start;
    best = std::min(best, taken.count() / calls);
  }
  return best;
}

}  // namespace kartocheck::bench
