#include "diagnosis/library_fault_text.h"

#include "platform/system_names.h"

namespace kartocheck {

QString LibraryFaultText(const LibraryFault& fault) {
  const QString detail = QString::fromStdString(fault.Detail);
  const QString quoted = u'"' + detail + u'"';
  switch (fault.Kind) {
    case LibraryFaultKind::HelperMissing:
      return u"Das Hilfsprogramm " + quoted +
             u" lässt sich nicht starten. Installieren Sie KartoCheck neu.";
    case LibraryFaultKind::FileMissing:
      return u"Die CT-API-Bibliothek " + quoted + u" wurde nicht gefunden.";
    case LibraryFaultKind::DependencyMissing:
      return u"Die CT-API-Bibliothek braucht eine weitere Bibliothek, die fehlt: " + detail + u'.';
    case LibraryFaultKind::NotALibrary:
      return quoted + u" ist keine Programmbibliothek dieses Systems.";
    case LibraryFaultKind::WrongWordSize:
      return quoted + u" hat eine andere Wortbreite (32 oder 64 Bit) als KartoCheck.";
    case LibraryFaultKind::NotLoadable:
      return u"Die CT-API-Bibliothek lässt sich nicht laden: " + detail;
    case LibraryFaultKind::EntryPointMissing:
      return u"Der CT-API-Bibliothek fehlt die Funktion " + detail + u'.';
    case LibraryFaultKind::Overrun:
      return QStringLiteral(
          "Die CT-API-Bibliothek hat außerhalb ihres Antwortpuffers geschrieben.");
    case LibraryFaultKind::Threw:
      return QStringLiteral("Die CT-API-Bibliothek hat eine C++-Ausnahme ausgelöst.");
    case LibraryFaultKind::EndedBySignal:
      return u"Die CT-API-Bibliothek ist abgestürzt (" + NameOfCrash(fault.Number) + u").";
    case LibraryFaultKind::EndedWithStatus:
      return u"Die CT-API-Bibliothek hat ihren Prozess beendet (Exit-Status " +
             QString::number(fault.Number) + u").";
    case LibraryFaultKind::Garbled:
      return QStringLiteral("Die CT-API-Bibliothek hat die Verbindung zum Programm gestört.");
    case LibraryFaultKind::ResponseTooLong:
      return QStringLiteral(
          "Die CT-API-Bibliothek meldet eine längere Antwort, als ihr Puffer fasst.");
    case LibraryFaultKind::ImproperCommand:
      return QStringLiteral("Das Programm hat ein Kommando gebildet, das keines ist.");
  }
  return {};
}

}  // namespace kartocheck
