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
  ReadOutcome outcome = ReadOutcome::Done;
  do {
    display.ShowStatusText(status_text::ReadPrompt.toString());
    if (steps.checkPort) steps.checkPort();
    const bool isReady = steps.checkStatus() == Readiness::Ready;
    answer = isReady ? Answer::Ok : AskForCard(steps, dialogs, display);
    if (answer == Answer::Ok) {
      display.ShowStatusText(status_text::Reading.toString());
      outcome = steps.read();
      steps.showSlot();
      display.ShowStatusText(status_text::Shown.toString());
    }
  } while (answer == Answer::Ok && outcome == ReadOutcome::TryAgain);
}

}  // namespace kartocheck
