#include "helper/arguments.h"

namespace ctapi::helper {

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

}  // namespace ctapi::helper
