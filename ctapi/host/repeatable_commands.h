#pragma once

#include "protocol/bytes.h"
#include "protocol/unit.h"

namespace ctapi::host {

// Whether a command may be carried out twice. ERASE BINARY, RESET and EJECT ICC act on the card,
// and REQUEST ICC does not bear it: where the first one was carried out, its repetition is answered
// with "already active" (6201), which the program takes for a memory card.
[[nodiscard]] bool MayBeRepeated(Unit unit, ByteView command);

}  // namespace ctapi::host
