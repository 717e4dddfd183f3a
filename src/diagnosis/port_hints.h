#pragma once

#include <QString>

#include "platform/port_directory.h"

namespace kartocheck {

// What keeps the user from a port, in one sentence, and what to do; empty where nothing does.
[[nodiscard]] QString PortHint(const PortTrouble& trouble);

// One sentence for each.
[[nodiscard]] QStringList PortHints(const std::vector<PortTrouble>& troubles);

}  // namespace kartocheck
