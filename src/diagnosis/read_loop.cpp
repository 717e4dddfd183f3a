#include "diagnosis/read_loop.h"

#include "text/status_texts.h"

namespace kartocheck {

namespace {

Answer AskForCard(const ReadLoopSteps& steps, Dialogs& dialogs, Display& display) {
  if (const QString hint = steps.hint(); !hint.isEmpty()) display.ShowStatusText(hint);
  return dialogs.Ask(steps.insertCardPrompt());
}

}  // namespace

void RunReadLoop(const ReadLoopSteps& steps, Dialogs& dialogs, Display& display) {
  Answer answer = Answer::Ok;
  std::int16_t result = 0;
  do {
    display.ShowStatusText(status_text::ReadPrompt.toString());
    if (steps.checkPort) steps.checkPort();
    result = steps.checkStatus();
    answer = result == ReadyToRead ? Answer::Ok : AskForCard(steps, dialogs, display);
    if (answer == Answer::Ok) {
      display.ShowStatusText(status_text::Reading.toString());
      result = steps.read();
      steps.showSlot();
      display.ShowStatusText(status_text::Shown.toString());
    }
  } while (answer == Answer::Ok && result >= 1);
}

}  // namespace kartocheck
