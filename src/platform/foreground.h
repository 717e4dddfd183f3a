#pragma once

#include <cstdint>

namespace kartocheck {

// Lets another process put a window of its own in front of this one's, where the system would keep
// it behind: until the user's next input.
void LetComeToFront(std::int64_t process);

}  // namespace kartocheck
