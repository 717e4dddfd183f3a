#include "diagnosis/status_check.h"

#include "terminal/command_catalogue.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

void Advise(const StatusCheckTarget& with, const QString& text) {
  with.dialogs.Tell(Icon::Critical, Dialogs::Title.toString(), text);
}

Readiness CheckSelectOfPresentCard(const StatusCheckTarget& with) {
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::SelectKvk, Unit::Card);
  if (answer.Is(sw::ConditionsOfUse)) {
    with.info.DisplayText = output_medium::DisplayOrPrinter;
  }
  return Readiness::Ready;
}

bool IsMobileDelta(const TerminalInfo& info) {
  return info.Reset95 && (info.ProductCode == product_code::SerieDeltaMobil ||
                          info.ProductCode == product_code::SerieDelta);
}

Readiness CheckEmptySlot(const StatusCheckTarget& with) {
  if (IsMobileDelta(with.info)) {
    Advise(with, Lines({u" Es sind keine Datensätze gespeichert! ", u""}));
    return Readiness::Ready;
  }
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::SelectKvk, Unit::Card);
  if (answer.Is(sw::NotAllowed)) with.info.SelectRefused = true;
  return Readiness::NotReady;
}

Readiness AdviseNotAllowed(const StatusCheckTarget& with) {
  Advise(with, with.info.IsMobile()
                   ? Lines({u" Bitte Chipkartenterminal überprüfen! ",
                            u" Ist das mobile Chipkartenterminal zugeschlossen?",
                            u" Wenn ja, Chipkartenterminal aufschließen."})
                   : Lines({u" Bitte Chipkartenterminal überprüfen! ",
                            u" Sind die Chipkartenterminal Menü-Einstellungen aktiviert? ",
                            u" Wenn ja, Chipkartenterminal auf die Standardanzeige stellen."}));
  return Readiness::Ready;
}

Readiness CheckOverOpenLink(const StatusCheckTarget& with) {
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::RequestIcc1, Unit::Terminal);
  if (answer.code == ctapi::code::TransmissionError) {
    with.info.DisplayText = output_medium::DisplayOrPrinter;
  }
  if (answer.Is(sw::Ok) || answer.Is(sw::OkProcessorCard) || answer.Is(sw::CardAlreadyPresent)) {
    return CheckSelectOfPresentCard(with);
  }
  if (answer.Is(sw::NoCard)) return CheckEmptySlot(with);
  if (answer.Is(sw::NotAllowed)) return AdviseNotAllowed(with);
  return Readiness::NotReady;
}

}  // namespace

Readiness CheckStatus(const StatusCheckTarget& target) {
  if (target.link.IsOpen()) target.link.CtClose();
  if (const CtCode code = target.link.CtOpen(target.port); code != ctapi::code::Success) {
    if (target.info.Answered && code == ctapi::code::TransmissionError) {
      Advise(target, Lines({u" Bitte Chipkartenterminal überprüfen! ",
                            u" Ist das Terminal eingeschaltet?! ",
                            u" Ist die KeyCard nicht mehr aktiv?! "}));
    }
    return Readiness::NotReady;
  }
  const Readiness readiness = CheckOverOpenLink(target);
  target.link.CtClose();
  return readiness;
}

}  // namespace kartocheck
