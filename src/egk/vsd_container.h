#pragma once

#include <QByteArrayView>

#include "text/bytes.h"

namespace kartocheck {

// The big-endian length or offset of two bytes, 0 to 65,535, at a 0-based index of a file; missing
// bytes count as 0.
[[nodiscard]] inline int NumberAt(QByteArrayView file, qsizetype index) {
  return static_cast<int>(bytes::NumberAt(file, index, 2));
}

// Where a block lies in the container EF.VD: 0-based indexes of its first and its last byte.
struct BlockOffsets {
  int start = 0;  // unsigned, 16 bits
  int end = 0;

  [[nodiscard]] int Length() const { return end - start + 1; }
  // Both offsets 0, or both FFFF: the container holds no such block.
  [[nodiscard]] bool IsAbsent() const { return start == end && (start == 0 || start == 0xFFFF); }
};

// The offsets that stand at a 0-based index of EF.VD: the VD's at 0, the GVD's at 4.
[[nodiscard]] inline BlockOffsets OffsetsAt(QByteArrayView file, qsizetype index) {
  return {NumberAt(file, index), NumberAt(file, index + 2)};
}

}  // namespace kartocheck
