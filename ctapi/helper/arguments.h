#pragma once

#include <string>
#include <vector>

namespace ctapi::helper {

// What the program was called with, without its own name, in UTF-8. argc and argv are those of
// main.
[[nodiscard]] std::vector<std::string> Arguments(int argc, char** argv);

}  // namespace ctapi::helper
