#pragma once

#include <QByteArray>

#include "console/port_report.h"

namespace kartocheck {

// The whole run as one JSON document, UTF-8. Its keys are stable and described in docs/console.md.
[[nodiscard]] QByteArray JsonReport(const RunReport& run);

}  // namespace kartocheck
