#pragma once

#include <QByteArray>

#include "text/hex_text.h"

namespace kartocheck {

// The big-endian number of two bytes at a 0-based index of a file; missing bytes count as 0.
[[nodiscard]] inline int NumberAt(const QByteArray& file, qsizetype index) {
  return static_cast<int>(hex::NumberAt(hex::Encode(file.mid(index, 2)), 1, 2));
}

// Where a block lies in the container EF.VD. The end offset belongs to the block.
struct BlockOffsets {
  int start = 0;  // unsigned, 16 bits
  int end = 0;

  [[nodiscard]] int Length() const { return end - start + 1; }
  // Both offsets 0, or both FFFF: the container holds no such block.
  [[nodiscard]] bool IsAbsent() const { return start == end && (start == 0 || start == 0xFFFF); }
};

// The offsets that stand at a 0-based index of EF.VD: the VD's at 0, the GVD's at 4.
[[nodiscard]] inline BlockOffsets OffsetsAt(const QByteArray& file, qsizetype index) {
  return {NumberAt(file, index), NumberAt(file, index + 2)};
}

}  // namespace kartocheck
