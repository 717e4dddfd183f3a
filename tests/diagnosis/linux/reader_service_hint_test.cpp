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
    testing::Values(
        Row{"PC/SC is not installed", PortTroubleKind::NotInstalled,
            u"PC/SC ist nicht installiert. Installieren Sie die Pakete \"pcscd\" und \"libccid\"."},
        Row{"the service does not run", PortTroubleKind::NoService,
            u"Der Kartenleser-Dienst läuft nicht. Starten Sie ihn mit \"sudo systemctl start "
            u"pcscd\"; fehlt er, installieren Sie die Pakete \"pcscd\" und \"libccid\"."},
        Row{"the service knows no reader", PortTroubleKind::NoReader,
            u"Der Kartenleser-Dienst kennt keinen Kartenleser. Stecken Sie den Leser an und "
            u"installieren Sie seinen Treiber (meist das Paket \"libccid\")."},
        Row{"the service refuses the user", PortTroubleKind::ServiceRefuses,
            u"Der Kartenleser-Dienst läuft, weist Sie aber ab. Arbeiten Sie in einer Sitzung am "
            u"Rechner selbst oder bitten Sie Ihre Systemverwaltung um dieses Recht."}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
