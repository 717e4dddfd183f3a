#include "kvk/read_dispatcher.h"

#include "kvk/kvk_reader.h"
#include "terminal/command_catalogue.h"
#include "terminal/reset_and_close.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

constexpr QStringView AskForAnotherTry = u" Noch einmal versuchen? ";
constexpr QStringView ReadImpossible =
    u" Lesen der Krankenversichertendaten von der Karte nicht möglich! ";

void Tell(const ReadTarget& with, Icon icon, const QString& text) {
  with.dialogs.Tell(icon, Dialogs::Title.toString(), text);
}

ReadOutcome AskToRetry(const ReadTarget& with, const QString& text, Icon icon = Icon::Question) {
  const Answer answer =
      with.dialogs.Ask({.title = Dialogs::Title.toString(), .text = text, .icon = icon});
  return answer == Answer::Yes ? ReadOutcome::TryAgain : ReadOutcome::Failed;
}

bool AgreesToErase(const ReadTarget& with, const QString& warning) {
  return with.dialogs.Ask({.title = Dialogs::Title.toString(),
                           .text = warning,
                           .preselected = Answer::No,
                           .consequence = Consequence::ErasesRecord}) == Answer::Yes;
}

ReadOutcome ReportFailedOpen(const ReadTarget& with, CtCode code) {
  Tell(with, Icon::Critical,
       code == ctapi::code::TransmissionError
           ? Lines({ReadImpossible,
                    u" Haben Sie als Ausgabemedium LCD-Anzeige/Drucker eingestellt ?! "})
           : Lines({ReadImpossible, u" Kommunikationsfehler ! "}));
  return ReadOutcome::Failed;
}

ReadOutcome ReportOutputMedium(const ReadTarget& with) {
  with.info.DisplayText = output_medium::DisplayOrPrinter;
  Tell(with, Icon::Critical,
       Lines({ReadImpossible, u" Beim Chipkartenterminal ist als Ausgabemedium ", u"",
              u" LCD-Anzeige/Drucker eingestellt! "}));
  return ReadOutcome::Failed;
}

ReadOutcome ReportNoCard(const ReadTarget& with) {
  return AskToRetry(with, Lines({u" Keine Chipkarte gefunden! ", AskForAnotherTry}));
}

// "6200": no card, or no record, within the waiting time.
ReadOutcome ReportNothingFound(const ReadTarget& with) {
  if (with.info.SelectRefused) {
    return AskToRetry(with, Lines({u" Keine Datensätze/KeyCard gefunden! ",
                                   u" Gerät ist zugeschlossen!", u"", AskForAnotherTry}));
  }
  if (!with.info.IsMobile()) return ReportNoCard(with);
  // A terminal with extended records has told the user already, in the status check.
  if (with.info.Reset9501) return ReadOutcome::Failed;
  return AskToRetry(with, Lines({u" Keine Datensätze gefunden! ", AskForAnotherTry}));
}

ReadOutcome ReportRequestNotAllowed(const ReadTarget& with) {
  return AskToRetry(
      with, with.info.IsMobile()
                ? Lines({u" Das mobile Chipkartenterminal ist zugeschlossen! ", AskForAnotherTry})
                : Lines({u" Die Chipkartenterminal Menü-Einstellungen sind aktiviert! ",
                         AskForAnotherTry}));
}

// "6A82" to the current identifier of the KVK application: a card with the older one?
ReadOutcome TryOldIdentifier(const ReadTarget& with) {
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::SelectKvkOld, Unit::Card);
  return AskToRetry(with,
                    answer.Is(sw::Ok) ? Lines({u" Krankenversichertenkarte mit altem AID! ",
                                               u" Kein Vedra Gerät! ", AskForAnotherTry})
                                      : Lines({u" Karte hat kein Krankenversichertenkarten AID! ",
                                               AskForAnotherTry}),
                    Icon::Critical);
}

ReadOutcome ReportSelectNotAllowed(const ReadTarget& with) {
  if (with.info.ManufacturerId == MakerNorvaHandheld) {
    Tell(with, Icon::Critical,
         Lines({u"", u"", ReadImpossible, u" Bitte die Betriebsart des Terminals prüfen! "}));
  }
  return ReadOutcome::Failed;
}

bool AgreesToReadStoredKvk(const ReadTarget& with) {
  return AgreesToErase(
      with,
      Lines({u" Achtung, Lesetest an einem Vedra F/Serie Delta/Sigma Gerät! ",
             u" Nach Durchführen eines Lesetests an einem Vedra F/Serie Delta/Sigma Gerät ",
             u" mit dieser Testsoftware wird der gelesene Datensatz ", u" automatisch gelöscht!",
             u"", u"                          Möchten Sie fortfahren? "}));
}

bool AgreesToReadStoredEgk(const ReadTarget& with) {
  return AgreesToErase(
      with,
      Lines({u" Achtung, Lesetest an einem Gerät der Norva Delta Serie! ",
             u" Nach Durchführen eines Lesetests an einem Gerät der Norva Delta Serie ",
             u" mit dieser Testsoftware wird der gelesene Datensatz ", u" automatisch gelöscht!",
             u"", u"                          Möchten Sie fortfahren? "}));
}

ReadOutcome ReportRefusedRead(const ReadTarget& with, const CtAnswer& answer) {
  if (!with.info.IsMobile() || !with.info.Reset9501) return ReadOutcome::Failed;
  if (answer.Is(sw::ReadFailed)) {
    Tell(with, Icon::Information,
         Lines({u"Das Kommando Read KVK war nicht erfolgreich!", u"",
                u"Ist die HBA/SMC-B Karte im Terminal freigeschaltet?",
                u"Wird der Idle-Screen oder ein Datensatz angezeigt?"}));
  } else if (answer.Is(sw::NotAllowed)) {
    Tell(with, Icon::Information,
         Lines({u"Das Kommando Read KVK war nicht erfolgreich!", u"",
                u"Ist die HBA/SMC-B Karte im Terminal gesteckt und freigeschaltet?"}));
  }
  return ReadOutcome::Failed;
}

ReadOutcome HandleDefectiveData(const ReadTarget& with) {
  ClearSlot(with.info, with.insured, with.egk);
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  if (answer.Is(sw::MobileTerminal)) {
    with.info.ModelName = u"Modell Vedra F/Serie Delta/Sigma";
  }
  return ReadOutcome::Failed;
}

ReadOutcome EraseRecord(const ReadTarget& with) {
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::EraseBinary, Unit::Card);
  if (answer.Is(sw::Ok)) {
    (void)with.link.CtExchange(CommandCatalogue::EjectIcc1Ack, Unit::Terminal);
    return ReadOutcome::Done;
  }
  // A terminal that does not know the command keeps no record that could be erased.
  if (answer.Is(sw::UnknownInstruction)) return ReadOutcome::Done;
  // Without an answer the record may be gone: what was read is all that is left of it.
  const bool mayBeGone = !answer.StatusWord();
  if (!mayBeGone) ClearSlot(with.info, with.insured, with.egk);
  Tell(with, Icon::Critical,
       Lines({u" ERASE BINARY Error! ", u" Datensatz konnte nicht gelöscht werden! "}));
  return mayBeGone ? ReadOutcome::Done : ReadOutcome::Failed;
}

ReadOutcome ReadKvkRecord(const ReadTarget& with) {
  if (with.info.IsMobile() && !AgreesToReadStoredKvk(with)) return ReadOutcome::Failed;

  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::ReadBinary, Unit::Card);
  if (!answer.Succeeded()) return ReadOutcome::Failed;
  if (!answer.Is(sw::Ok) && !answer.Is(sw::EndOfFile)) {
    return ReportRefusedRead(with, answer);
  }
  if (ReadKvk(answer.HexData(), {with.info, with.insured, with.port, with.dialogs}) !=
      KvkResult::Read) {
    return HandleDefectiveData(with);
  }
  return with.info.IsMobile() ? EraseRecord(with) : ReadOutcome::Done;
}

ReadOutcome ReadMemoryCard(const ReadTarget& with) {
  if (!with.info.IsMobile()) {
    (void)with.link.CtExchange(CommandCatalogue::ResetIcc1, Unit::Terminal);
  }
  const CtAnswer answer = with.link.CtExchange(CommandCatalogue::SelectKvk, Unit::Card);
  if (answer.code == ctapi::code::TransmissionError) return ReportOutputMedium(with);
  if (!answer.Succeeded()) {
    Tell(with, Icon::Critical, QStringLiteral(" Chipkartenterminal RETURN Fehler! "));
    return ReadOutcome::Failed;
  }
  if (answer.Is(sw::Ok)) return ReadKvkRecord(with);
  if (answer.Is(sw::ConditionsOfUse)) return ReportOutputMedium(with);
  if (answer.Is(sw::NotFound)) return TryOldIdentifier(with);
  if (answer.Is(sw::NotAllowed)) return ReportSelectNotAllowed(with);
  return ReadOutcome::Failed;
}

ReadOutcome OutcomeOf(EgkResult result) {
  return result == EgkResult::Finished ? ReadOutcome::Done : ReadOutcome::Failed;
}

ReadOutcome ReadProcessorCard(const ReadTarget& with) {
  const EgkTarget target{with.link,       with.info,    with.insured, with.egk,
                         with.validation, with.dialogs, with.display, with.eventLoop};
  if (!with.info.IsMobile()) return OutcomeOf(ReadEgkFromCard(target));
  return AgreesToReadStoredEgk(with) ? OutcomeOf(ReadEgkFromMobile(target)) : ReadOutcome::Failed;
}

ReadOutcome ReadOverOpenLink(const ReadTarget& with, bool& egk) {
  const CtAnswer reset = with.link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  if (reset.Is(sw::MobileTerminal)) with.info.Reset95 = true;

  const CtAnswer card = with.link.CtExchange(CommandCatalogue::RequestIcc1, Unit::Terminal);
  if (card.Is(sw::Ok) || card.Is(sw::CardAlreadyPresent)) {
    return ReadMemoryCard(with);
  }
  if (card.Is(sw::OkProcessorCard)) {
    egk = true;
    return ReadProcessorCard(with);
  }
  if (card.Is(sw::NoCard)) return ReportNothingFound(with);
  if (card.Is(sw::NotAllowed)) return ReportRequestNotAllowed(with);
  return ReportNoCard(with);
}

// What counts as data that were read is decided here alone: without any, the next read reads again.
void TakeOver(const ReadTarget& with, bool egk) {
  with.info.DataRead = !with.insured.IsEmpty() || with.egk.HoldsData();
  with.info.EgkData = egk && with.info.DataRead;
}

}  // namespace

ReadOutcome ReadCardData(const ReadTarget& target) {
  ClearSlot(target.info, target.insured, target.egk);
  if (const CtCode code = target.link.CtOpen(target.port); code != ctapi::code::Success) {
    return ReportFailedOpen(target, code);
  }
  bool egk = false;
  const CtSession::BeforeFatal save(target.link, [&] { TakeOver(target, egk); });
  const ReadOutcome outcome = ReadOverOpenLink(target, egk);
  ResetAndClose(target.link);
  if (outcome == ReadOutcome::Done) {
    TakeOver(target, egk);
  } else {
    ClearSlot(target.info, target.insured, target.egk);
  }
  return outcome;
}

void ClearSlot(TerminalInfo& info, InsuredData& insured, EgkData& egk) {
  insured.Clear();
  egk = {};
  info.DataRead = false;
  info.EgkData = false;
}

}  // namespace kartocheck
