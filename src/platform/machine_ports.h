#pragma once

#include <functional>
#include <memory>

#include "platform/port_directory.h"

namespace kartocheck {

// What the machine knows of all its ports, from what it knows of the serial ones. servesReaders:
// whether the CT-API library in use is the one that the program brings along, which serves the
// machine's own card readers; of the devices of another one nothing is known.
[[nodiscard]] std::unique_ptr<const PortDirectory> WithReaders(
    std::unique_ptr<const PortDirectory> serialPorts, std::function<bool()> servesReaders);

}  // namespace kartocheck
