#include "diagnosis/reader_service_hints.h"

namespace kartocheck::test {

std::vector<ReaderServiceHint> ReaderServiceHints() {
  return {{"PC/SC is not installed", PortTroubleKind::NotInstalled,
           u"PC/SC ist nicht installiert. Installieren Sie die Pakete \"pcscd\" und \"libccid\"."},
          {"the service does not run", PortTroubleKind::NoService,
           u"Der Kartenleser-Dienst läuft nicht. Starten Sie ihn mit \"sudo systemctl start "
           u"pcscd\"; fehlt er, installieren Sie die Pakete \"pcscd\" und \"libccid\"."},
          {"the service knows no reader", PortTroubleKind::NoReader,
           u"Der Kartenleser-Dienst kennt keinen Kartenleser. Stecken Sie den Leser an und "
           u"installieren Sie seinen Treiber (meist das Paket \"libccid\")."},
          {"the service refuses the user", PortTroubleKind::ServiceRefuses,
           u"Der Kartenleser-Dienst läuft, weist Sie aber ab. Arbeiten Sie in einer Sitzung am "
           u"Rechner selbst oder bitten Sie Ihre Systemverwaltung um dieses Recht."}};
}

}  // namespace kartocheck::test
