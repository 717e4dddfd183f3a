#include "diagnosis/guided_diagnosis.h"

#include <array>

namespace kartocheck {

namespace {

QString Title() {
  return QStringLiteral(" KartoCheck Diagnose ");
}

void Tell(const GuidedDiagnosisTarget& with, Icon icon, Hint hint) {
  with.dialogs.Tell(icon, Title(), with.hints[hint]);
}

bool IsConfirmed(const GuidedDiagnosisTarget& with, Hint question) {
  return with.dialogs.Ask({.title = Title(), .text = with.hints[question]}) == Answer::Yes;
}

// A fault that the user can mend at the terminal.
struct MendableFault {
  Hint question;
  Hint advice;
  QStringView step;
};

constexpr std::array<MendableFault, 3> MendableFaults{{
    {Hint::PowerQuestion, Hint::PowerAdvice, u"Stromversorgung"},
    {Hint::FormatQuestion, Hint::FormatAdvice, u"Ausgabeformat"},
    {Hint::BaudQuestion, Hint::BaudAdvice, u"Baudrate"},
}};

}  // namespace

void RunGuidedDiagnosis(const GuidedDiagnosisTarget& target) {
  target.showStep(QStringLiteral("Anschlußkabel"));
  if (!IsConfirmed(target, Hint::CableQuestion)) {
    Tell(target, Icon::Critical, Hint::CableAdvice);
    return target.showTerminalStatus();
  }
  for (const MendableFault& fault : MendableFaults) {
    target.showStep(fault.step.toString());
    if (IsConfirmed(target, fault.question)) continue;
    Tell(target, Icon::Critical, fault.advice);
    return target.checkPort();
  }
  Tell(target, Icon::Exclamation, Hint::Closing);
  target.showTerminalStatus();
}

}  // namespace kartocheck
