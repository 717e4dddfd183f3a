#pragma once

#include <windows.h>

#include <memory>

namespace kartocheck {

// What the system has allocated for its caller.
struct LocalFreer {
  void operator()(void* memory) const { ::LocalFree(memory); }
};
template <typename Type>
using LocalMemory = std::unique_ptr<Type, LocalFreer>;

}  // namespace kartocheck
