#pragma once

#include "host/host_library.h"

namespace ctapi::host {

// Every way to a terminal that this library knows.
[[nodiscard]] std::vector<ServedPorts> MakeTransports();

}  // namespace ctapi::host
