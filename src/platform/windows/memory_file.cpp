#include "platform/memory_file.h"

// For systems without files in memory.
namespace kartocheck {

std::optional<int> OpenMemoryFile(QByteArrayView) {
  return std::nullopt;
}

void CloseMemoryFile(int) {}

}  // namespace kartocheck
