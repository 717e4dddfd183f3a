#pragma once

#include <functional>
#include <vector>

#include "platform/display.h"
#include "platform/port.h"
#include "terminal/ct_session.h"

namespace kartocheck {

// Number of ports that a sweep tries: COM 1 to 256 and 256 USB devices.
inline constexpr int SweepPortCount = ctapi::ComPorts.Count() + ctapi::UsbPorts.Count();

// What is said while the port, COM 5 or further, is looked at.
[[nodiscard]] QString PortCheckText(Port port);

// Tries every CT-API port number with a bare open and close, and returns those that answer, COM 1
// to 4 excepted, in the order found. beforePort: called with the number of ports tried, 0 to 511;
// false ends the sweep early.
[[nodiscard]] std::vector<Port> SweepCtApiPorts(CtSession& link, Display& display,
                                                const std::function<bool(int done)>& beforePort);

}  // namespace kartocheck
