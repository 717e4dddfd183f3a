#include "diagnosis/hint_texts.h"

#include "text/lines.h"

namespace kartocheck {

namespace {

// A text more or less than there are hints does not fit the record.
std::array<QString, HintCount> AllTexts() {
  return std::array{
      Lines({u"Haben Sie das Norva Chipkartenterminal mit dem ",
             u"Anschlußkabel für die serielle Schnittstelle RS 232 ",
             u"(KBV Spezifikation beachten) ohne weitere Verlängerungskabel ",
             u"und Adapter mit Ihrem PC verbunden? "}),
      Lines({u"Schalten Sie bitte Ihren PC aus und schließen Sie ",
             u"das Norva Chipkartenterminal nur über das KBV konforme ",
             u"Kommunikationskabel an den PC an. Beachten Sie dazu ",
             u"unbedingt die Dokumentation Ihres Systemlieferanten und ", u"PC-Herstellers. "}),
      Lines({u"Haben Sie das Norva Chipkartenterminal mit dem ",
             u"mitgelieferten Steckernetzteil an die Netzdose ",
             u"angeschlossen bzw. haben Sie den Handy-Kartenleser ", u"eingeschaltet? "}),
      Lines({u"Schließen Sie das Norva Chipkartenterminal mit dem ",
             u"mitgelieferten Steckernetzteil an die Netzsteckdose an ",
             u"bzw. schalten Sie den Handy-Kartenleser ein. "}),
      Lines({u"Haben Sie am Norva Chipkartenterminal das Ausgabeformat auf",
             u"PC-ASN.1 bzw. PC-Festformat gestellt? "}),
      Lines({u"Damit Kartendaten vom Rechner (PC) gelesen werden können, ",
             u"ist der Chipkartenleser auf das entsprechende Ausgabemedium ",
             u"PC-ASN.1 bzw. PC-Festformat einzustellen. Stellen Sie jetzt ",
             u"das entsprechende Anzeigeformat ein. ", u"Hauptmenü/Unterpunkt \\4 Ausgabemedium"}),
      Lines({u"Haben Sie am Norva Chipkartenterminal die richtige ",
             u"Baudrate (9600,e,8,1) eingestellt? "}),
      Lines({u"Stellen Sie jetzt am Norva Chipkartenterminal die richtige ",
             u"Baudrate (9600,e,8,1) ein. ", u"",
             u"Hauptmenü/Unterpunkt \\964 Service\\Konfiguration\\Baudrate SIO-0.",
             u"9600,e,8,1 einstellen."}),
      Lines({u"Es ist keine weitere Fehlerquelle bekannt.", u""}),
  };
}

}  // namespace

HintTexts::HintTexts() : texts_(AllTexts()) {}

}  // namespace kartocheck
