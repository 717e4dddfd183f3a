#pragma once

#include <memory>
#include <string>

#include "host/line_port.h"
#include "protocol/return_code.h"

namespace ctapi::host {

struct OpenedLine {
  std::int8_t Code = code::InvalidParameter;
  std::unique_ptr<LinePort> Line{};  // on success only
};

// Opens a serial device for this program alone: 8 data bits, even parity, one stop bit, DTR and RTS
// on, nothing left in its buffers. -1: there is no such device; -127: another program holds it, or
// the user may not open it.
[[nodiscard]] OpenedLine OpenSerialDevice(const std::string& path);

}  // namespace ctapi::host
