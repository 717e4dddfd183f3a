#include "diagnosis/reader_service_hints.h"

namespace kartocheck::test {

std::vector<ReaderServiceHint> ReaderServiceHints() {
  return {{"PC/SC is not installed", PortTroubleKind::NotInstalled,
           u"Diesem Windows fehlt die Schnittstelle zu Kartenlesern (winscard.dll). "
           u"Lassen Sie es von Ihrer Systemverwaltung reparieren."},
          {"the service does not run", PortTroubleKind::NoService,
           u"Der Windows-Dienst \"Smartcard\" läuft nicht. Stecken Sie den "
           u"Kartenleser an; startet ihn das nicht, starten Sie ihn in "
           u"\"services.msc\" oder als Administrator mit \"net start SCardSvr\"."},
          {"the service knows no reader", PortTroubleKind::NoReader,
           u"Windows kennt keinen Kartenleser. Stecken Sie den Leser an und "
           u"installieren Sie den Treiber seines Herstellers; im Geräte-Manager steht "
           u"er dann unter \"Smartcardleser\"."},
          {"the service refuses the user", PortTroubleKind::ServiceRefuses,
           u"Der Windows-Dienst \"Smartcard\" läuft, weist Sie aber ab. Arbeiten Sie "
           u"am Rechner selbst statt über eine Fernverbindung oder bitten Sie Ihre "
           u"Systemverwaltung um dieses Recht."}};
}

}  // namespace kartocheck::test
