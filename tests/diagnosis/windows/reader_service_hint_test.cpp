#include <gtest/gtest.h>
#include <ostream>

#include "diagnosis/port_hints.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// What is said of the card reader service by the names that it has on this system.

namespace kartocheck::test {
namespace {

struct Row {
  const char* sentence;
  PortTroubleKind trouble;
  QStringView hint;

  friend std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.sentence; }
};

class ReaderServiceHintTest : public testing::TestWithParam<Row> {};

TEST_P(ReaderServiceHintTest, SaysWhatToDo) {
  EXPECT_EQ(PortHint({.Kind = GetParam().trouble}), GetParam().hint);
}

INSTANTIATE_TEST_SUITE_P(
    Diagnosis, ReaderServiceHintTest,
    testing::Values(Row{"PC/SC is not installed", PortTroubleKind::NotInstalled,
                        u"Diesem Windows fehlt die Schnittstelle zu Kartenlesern (winscard.dll). "
                        u"Lassen Sie es von Ihrer Systemverwaltung reparieren."},
                    Row{"the service does not run", PortTroubleKind::NoService,
                        u"Der Windows-Dienst \"Smartcard\" läuft nicht. Stecken Sie den "
                        u"Kartenleser an; startet ihn das nicht, starten Sie ihn in "
                        u"\"services.msc\" oder als Administrator mit \"net start SCardSvr\"."},
                    Row{"the service knows no reader", PortTroubleKind::NoReader,
                        u"Windows kennt keinen Kartenleser. Stecken Sie den Leser an und "
                        u"installieren Sie den Treiber seines Herstellers; im Geräte-Manager steht "
                        u"er dann unter \"Smartcardleser\"."},
                    Row{"the service refuses the user", PortTroubleKind::ServiceRefuses,
                        u"Der Windows-Dienst \"Smartcard\" läuft, weist Sie aber ab. Arbeiten Sie "
                        u"am Rechner selbst statt über eine Fernverbindung oder bitten Sie Ihre "
                        u"Systemverwaltung um dieses Recht."}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
