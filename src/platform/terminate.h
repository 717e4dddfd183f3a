#pragma once

#include <functional>

namespace kartocheck {

// Ends the whole program at once, with exit status 3. Never returns in the program; a test's
// throws.
using Terminate = std::function<void()>;

}  // namespace kartocheck
