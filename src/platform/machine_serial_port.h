#pragma once

#include <memory>

#include "platform/serial_port.h"
#include "protocol/com_table.h"

namespace kartocheck {

// The serial ports of the machine, by the table's devices. May need a running event loop to
// receive.
[[nodiscard]] std::unique_ptr<SerialPort> MachineSerialPort(ctapi::ComTable table);

}  // namespace kartocheck
