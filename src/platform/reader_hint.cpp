#include "platform/reader_hint.h"

#include "host/reader_trouble.h"

namespace kartocheck {

using ctapi::host::ReaderTrouble;

QString ReaderHint(ReaderTrouble trouble) {
  switch (trouble) {
    case ReaderTrouble::None:
      break;
    case ReaderTrouble::NotInstalled:
      return QStringLiteral(
          "PC/SC ist nicht installiert. Installieren Sie die Pakete \"pcscd\" und \"libccid\".");
    case ReaderTrouble::NoService:
      return QStringLiteral(
          "Der Kartenleser-Dienst läuft nicht. Starten Sie ihn mit \"sudo systemctl start "
          "pcscd\"; fehlt er, installieren Sie die Pakete \"pcscd\" und \"libccid\".");
    case ReaderTrouble::NoReader:
      return QStringLiteral(
          "Der Kartenleser-Dienst kennt keinen Kartenleser. Stecken Sie den Leser an und "
          "installieren Sie seinen Treiber (meist das Paket \"libccid\").");
    case ReaderTrouble::CardHeld:
      return QStringLiteral(
          "Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie es und versuchen Sie "
          "es noch einmal.");
  }
  return {};
}

}  // namespace kartocheck
