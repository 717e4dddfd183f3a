#include "protocol/environment.h"

#include <cstdlib>

namespace ctapi {

std::optional<std::string> EnvironmentText(const char* name) {
  const char* const text = std::getenv(name);
  return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace ctapi
