#pragma once

#include <QString>

namespace kartocheck {

// Name of a further port in lists and on the fifth tab: "COM 7", "USB Device 1", "?Device 300".
[[nodiscard]] QString PortName(int pn);

// A line of the list of further ports: the name and "(CTAPI pn=N)".
[[nodiscard]] QString PortLine(int pn);

}  // namespace kartocheck
