#pragma once

#include "host/host_library.h"

namespace ctapi::host {

// The library of this process, over the ways to terminals that it knows. Its code stays loaded from
// then on: a call of PC/SC that does not return may keep a thread beyond the library's use.
[[nodiscard]] HostLibrary& TheLibrary();

}  // namespace ctapi::host
