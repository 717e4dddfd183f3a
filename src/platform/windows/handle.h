#pragma once

#include <memory>
#include <type_traits>
#include <windows.h>

namespace kartocheck {

// An open handle of the kernel's.
struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

// What opening a file gives, whose sign of failure is another one than that of other handles.
[[nodiscard]] inline Handle FileHandle(HANDLE handle) {
  return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

// What the system has allocated for its caller.
struct LocalFreer {
  void operator()(void* memory) const { ::LocalFree(memory); }
};
template <typename Type>
using LocalMemory = std::unique_ptr<Type, LocalFreer>;

}  // namespace kartocheck
