#pragma once

#include <functional>

#include "platform/library_fault.h"

namespace kartocheck {

// Ends the whole program at once, with exit status 3, after the fatal message was shown; the fault
// is what that message does not tell. Never returns in the program; a test's throws.
using Terminate = std::function<void(const LibraryFault&)>;

}  // namespace kartocheck
