#pragma once

#include "host/pcsc_api.h"

namespace ctapi::host {

// The client library in this file, a full path.
[[nodiscard]] std::optional<PcscApi> LoadPcscApiFrom(const std::wstring& file);

}  // namespace ctapi::host
