#pragma once

#include "simulator/bytes.h"

namespace ctapi {

// The bytes as one gzip member (RFC 1952), the way the documents stand on a card: header 1F 8B 08
// 00, no name, no time.
[[nodiscard]] Bytes Gzip(ByteView bytes);

}  // namespace ctapi
