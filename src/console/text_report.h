#pragma once

#include <QString>

#include <iosfwd>
#include <string>

#include "console/port_report.h"

namespace kartocheck {

// UTF-8 for a terminal. Control characters but the line break become U+FFFD: what a card holds must
// not drive the terminal it is shown on.
[[nodiscard]] std::string Printable(const QString& text);

// What was found on one port: terminal and insured data.
void WritePort(std::ostream& out, const PortReport& report);

// One line a port, and why no reader was found.
void WritePortTable(std::ostream& out, const RunReport& run);

}  // namespace kartocheck
