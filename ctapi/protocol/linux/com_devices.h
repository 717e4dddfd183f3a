#pragma once

#include "protocol/com_table.h"

namespace ctapi {

// The devices that these folders of sysfs and of device files tell of.
[[nodiscard]] std::vector<ComDevice> FindComDevicesIn(const std::string& ttyFolder,
                                                      const std::string& deviceFolder);

}  // namespace ctapi
