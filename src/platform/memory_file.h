#pragma once

#include <QByteArrayView>

#include <optional>

namespace kartocheck {

// A file descriptor that reads the bytes from a file in memory, which has no name and never reaches
// a disk. Nothing where the system offers none. The caller closes it.
[[nodiscard]] std::optional<int> OpenMemoryFile(QByteArrayView bytes);

// Closes a descriptor that nobody took over.
void CloseMemoryFile(int descriptor);

}  // namespace kartocheck
