#pragma once

#include <string_view>

#include "protocol/com_table.h"

namespace ctapi {

// n of "COMn", in whatever letters and also with the prefix of a device (\\.\); nothing for other
// names.
[[nodiscard]] std::optional<int> ComNumberOf(std::string_view name);

// What a USB device says of itself, by the name under which the system's device manager keeps it
// (USB\VID_0403&PID_6001\A12345, FTDIBUS\VID_0403+PID_6001+A12345A\0000). Empty for a device that
// hangs on no USB.
[[nodiscard]] std::string UsbIdentification(std::string_view instance,
                                            std::string_view manufacturer,
                                            std::string_view product);

}  // namespace ctapi
