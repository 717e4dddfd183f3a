#include "protocol/private_memory.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#if !defined(KARTOCHECK_CHECKED_MEMORY)
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <malloc.h>

// glibc overwrites what is freed as well (M_PERTURB), but not the small blocks that it keeps for
// the next request of a thread, and most texts are small. These two take the place of glibc's for
// the whole process: its own are behind them by another name.
extern "C" {

void __libc_free(void* memory);  // NOLINT(bugprone-reserved-identifier): glibc's name

// The second eight bytes are glibc's: when a block is freed it writes a mark against freeing it
// twice there, and looks for that mark before.
static void Overwrite(void* memory, std::size_t size) {
  constexpr std::size_t MarkAt = 8;
  constexpr std::size_t MarkEnd = 16;
  auto* const bytes = static_cast<unsigned char*>(memory);
  ::explicit_bzero(bytes, std::min(size, MarkAt));
  if (size > MarkEnd) ::explicit_bzero(bytes + MarkEnd, size - MarkEnd);
}

__attribute__((visibility("default"))) void free(void* memory) {
  if (memory == nullptr) return;
  const int error = errno;
  Overwrite(memory, ::malloc_usable_size(memory));
  __libc_free(memory);
  errno = error;
}

// Moves always: glibc's would leave the old place as it is.
__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
  if (memory == nullptr) return std::malloc(size);
  if (size == 0) {
    free(memory);
    return nullptr;
  }
  void* const moved = std::malloc(size);
  if (moved == nullptr) return nullptr;
  std::memcpy(moved, memory, std::min(size, ::malloc_usable_size(memory)));
  free(memory);
  return moved;
}
}
#endif

namespace ctapi {

void KeepMemoryPrivate() {
  constexpr rlimit Nothing{0, 0};
  ::setrlimit(RLIMIT_CORE, &Nothing);
#if !defined(KARTOCHECK_CHECKED_MEMORY)
  // Leak detection looks into the process from another one.
  ::prctl(PR_SET_DUMPABLE, 0);
#endif
}

}  // namespace ctapi
