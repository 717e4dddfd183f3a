#pragma once

#include <functional>
#include <string>
#include <vector>

#include "egk/egk_reader.h"

namespace kartocheck::test {

// Stands in for the eGK readers: the dispatcher's business ends where they are called.
struct NotedEgkReaders {
  // "card" or "mobile", in order.
  static inline std::vector<std::string> calls;
  // What the next call does; nothing but to stop where it is empty.
  static inline std::function<EgkResult(const EgkTarget&)> read;

  static void Forget() {
    calls.clear();
    read = nullptr;
  }
};

}  // namespace kartocheck::test
