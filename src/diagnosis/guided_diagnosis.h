#pragma once

#include <functional>

#include "diagnosis/hint_texts.h"
#include "platform/dialogs.h"

namespace kartocheck {

// What the guided diagnosis works with.
struct GuidedDiagnosisTarget {
  const HintTexts& hints;
  Dialogs& dialogs;
  std::function<void(const QString& step)> showStep;  // what is being asked about
  std::function<void()> checkPort;
  std::function<void()> showTerminalStatus;
};

// Asks about cable, power supply, output format and baud rate. The first answer but Yes brings its
// advice and, but for the cable, where the PC is to be switched off, a check of the port.
void RunGuidedDiagnosis(const GuidedDiagnosisTarget& target);

}  // namespace kartocheck
