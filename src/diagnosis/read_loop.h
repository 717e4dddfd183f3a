#pragma once

#include <cstdint>
#include <functional>

#include "diagnosis/status_check.h"
#include "platform/dialogs.h"
#include "platform/display.h"

namespace kartocheck {

// What one round of the read loop does. An action that does not check the port anew in each round
// leaves checkPort empty.
struct ReadLoopSteps {
  std::function<void()> checkPort;
  std::function<std::int16_t()> checkStatus;  // ReadyToRead, or NotReady: ask for the card
  std::function<QString()> hint;  // what keeps the card from being read; empty where nothing does
  std::function<Question()> insertCardPrompt;
  std::function<std::int16_t()> read;  // 0 done, 1 the user wants another try, below 0 failed
  std::function<void()> showSlot;
};

// Checks, asks for the card where it is needed, and reads; again while the user has not cancelled
// and the last result is 1 or more. A hint is shown before the card is asked for.
void RunReadLoop(const ReadLoopSteps& steps, Dialogs& dialogs, Display& display);

}  // namespace kartocheck
