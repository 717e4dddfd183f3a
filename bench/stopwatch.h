#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <limits>
#include <vector>

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

template <typename Work>
[[nodiscard]] double MillisecondsOf(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

// values: at least one.
[[nodiscard]] inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace kartocheck::bench
