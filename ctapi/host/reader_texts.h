#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "protocol/bytes.h"

namespace ctapi::host {

// What a PC/SC reader tells of itself in the manufacturer's data object of a card terminal (CT-BCS,
// tag 46): maker and product from the reader's name, the version of its driver, five characters
// each. None of it is a code by which a terminal model is known, so no reader is taken for one.
[[nodiscard]] Bytes ManufacturerObject(std::string_view reader,
                                       std::optional<std::uint32_t> driverVersion);

}  // namespace ctapi::host
