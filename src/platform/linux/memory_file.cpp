#include "platform/memory_file.h"

#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>

namespace kartocheck {

namespace {

bool WriteAll(int descriptor, QByteArrayView bytes) {
  while (!bytes.isEmpty()) {
    const ssize_t written = write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.sliced(written);
  }
  return true;
}

}  // namespace

std::optional<int> OpenMemoryFile(QByteArrayView bytes) {
  const int descriptor = memfd_create("Daten.xml.gz", MFD_CLOEXEC);
  if (descriptor < 0) return std::nullopt;
  if (!WriteAll(descriptor, bytes) || lseek(descriptor, 0, SEEK_SET) != 0) {
    close(descriptor);
    return std::nullopt;
  }
  return descriptor;
}

void CloseMemoryFile(int descriptor) {
  close(descriptor);
}

}  // namespace kartocheck
