#include "platform/foreground.h"

#include <windows.h>

namespace kartocheck {

void LetComeToFront(std::int64_t process) {
  ::AllowSetForegroundWindow(static_cast<DWORD>(process));
}

}  // namespace kartocheck
