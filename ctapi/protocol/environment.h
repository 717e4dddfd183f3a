#pragma once

#include <optional>
#include <string>

namespace ctapi {

// A variable of the environment in UTF-8; nothing where it is not set.
[[nodiscard]] std::optional<std::string> EnvironmentText(const char* name);

}  // namespace ctapi
