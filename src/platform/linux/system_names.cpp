#include "platform/system_names.h"

#include <cstring>

namespace kartocheck {

// As Debian and its relatives call the packages, and as systemd starts services.
ReaderServiceAdvice AdviceOfThisSystem() {
  const QString packages = QStringLiteral("die Pakete \"pcscd\" und \"libccid\".");
  return {.NotInstalled = u"PC/SC ist nicht installiert. Installieren Sie " + packages,
          .NotRunning =
              u"Der Kartenleser-Dienst läuft nicht. Starten Sie ihn mit \"sudo systemctl "
              u"start pcscd\"; fehlt er, installieren Sie " +
              packages,
          .NoReader = QStringLiteral(
              "Der Kartenleser-Dienst kennt keinen Kartenleser. Stecken Sie den Leser an und "
              "installieren Sie seinen Treiber (meist das Paket \"libccid\")."),
          .Refuses = QStringLiteral(
              "Der Kartenleser-Dienst läuft, weist Sie aber ab. Arbeiten Sie in einer Sitzung am "
              "Rechner selbst oder bitten Sie Ihre Systemverwaltung um dieses Recht.")};
}

QString NameOfCrash(int number) {
  const char* const abbreviation = ::sigabbrev_np(number);
  if (abbreviation == nullptr) return u"Signal " + QString::number(number);
  return u"SIG" + QString::fromLatin1(abbreviation);
}

bool IsCrashStatus(int /*status*/) {
  return false;
}

QString PlatformWithoutDisplay() {
  return QStringLiteral("offscreen");
}

}  // namespace kartocheck
