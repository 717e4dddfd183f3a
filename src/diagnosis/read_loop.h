#pragma once

#include <functional>

#include "diagnosis/status_check.h"
#include "kvk/read_dispatcher.h"
#include "platform/dialogs.h"
#include "platform/display.h"

namespace kartocheck {

// What one round of the read loop does. An action that does not check the port anew in each round
// leaves checkPort empty.
struct ReadLoopSteps {
  std::function<void()> checkPort;
  std::function<Readiness()> checkStatus;
  std::function<QString()> hint;  // what keeps the card from being read; empty where nothing does
  std::function<Question()> insertCardPrompt;
  std::function<ReadOutcome()> read;
  std::function<void()> showSlot;
};

// Checks, asks for the card where it is needed, and reads; again while the user wants another try
// and has not cancelled. A hint is shown before the card is asked for.
void RunReadLoop(const ReadLoopSteps& steps, Dialogs& dialogs, Display& display);

}  // namespace kartocheck
