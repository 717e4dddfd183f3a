#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include "console/console_fixture.h"
#include "support/printing.h"

// What the reports tell of an eGK besides the fields that it shares with a KVK.

namespace kartocheck::test {
namespace {

constexpr const char16_t* Status = u"30323032353034303731303130353800500200000030000004";

// The practice's ports on COM 1 and COM 3: a card, and a mobile terminal's record.
class EgkReportTest : public testing::Test {
 protected:
  EgkReportTest() {
    for (const std::uint16_t pn : {std::uint16_t{1}, std::uint16_t{3}}) {
      console.practice.Attach(pn, PortOf("praxis", pn));
    }
  }

  void Validate() {
    LoadSchemas(console.module.Validation, {QStringLiteral(KARTOCHECK_SCHEMAS)});
    console.module.Validation.isOn = true;
  }

  QString Text(int pn) {
    EXPECT_EQ(console.Run({.port = Port(pn)}), exit_status::DataRead);
    return QString::fromStdString(console.out.str());
  }

  QJsonObject Json(int pn) {
    EXPECT_EQ(console.Run({.json = true, .port = Port(pn)}), exit_status::DataRead);
    const QByteArray bytes = QByteArray::fromStdString(console.out.str());
    const QJsonObject ports = QJsonDocument::fromJson(bytes).object().value(u"ports").toObject();
    return ports.value(QString::number(pn)).toObject().value(u"egk").toObject();
  }

  Console console{StoredRecords::Erase};
};

TEST_F(EgkReportTest, TheTextListsElementsValidationsAndStatus) {
  Validate();
  const QString text = Text(1);
  EXPECT_TRUE(
      text.contains(uR"(
  Persönliche Versichertendaten:
    Versicherten_ID                    A000000017
    Geburtsdatum                       19640812
    Nachname                           Beispiel
    Geschlecht                         W
    Postleitzahl (1. Anschrift)        00123
    Ort (1. Anschrift)                 Musterstadt
    Wohnsitzlaendercode (1. Anschrift) D
    Strasse (1. Anschrift)             Beispielweg
    Hausnummer (1. Anschrift)          12
    Titel                              Dr.
    Vorname                            Erika
    Validierung:                       Die lokale Validierung der XML Daten mittels vorgegebenen Schema für UC_PersoenlicheVersichertendatenXML (5.2.0) war erfolgreich!

  Allgemeine Versicherungsdaten:
    Beginn                        01.01.2015
    Kostentraegerkennung          999999905
    Name                          GKV Beispiel Nordwest
    WOP                           71
    Versichertenart               1
    Validierung:                  Die lokale Validierung der XML Daten mittels vorgegebenen Schema für UC_allgemeineVersicherungsdatenXML (5.2.0) war erfolgreich!

  Geschützte Versichertendaten:
    BesonderePersonengruppe       04
    DMP_Kennzeichnung             01
    ZUZAHLUNGSSTATUS\Status       1
    ZUZAHLUNGSSTATUS\Gueltig_bis  20251231
    Validierung:                  Die lokale Validierung der XML Daten mittels vorgegebenen Schema für UC_geschuetzteVersichertendatenXML (5.2.0) war erfolgreich!

  ICCSN:                          80276001230000000017
  EF.StatusVD:                    30323032353034303731303130353800500200000030000004

Schnittstellen
)")) << text.toStdString();
}

TEST_F(EgkReportTest, TheTextOfAStoredRecordHasItsStatusButNoCardNumber) {
  const QString text = Text(3);
  EXPECT_TRUE(text.contains(u"\n  EF.StatusVD:                    " + QStringView(Status) + u'\n'));
  EXPECT_TRUE(text.contains(u"\n    Postfach (2. Anschrift)            12 34\n"));
  EXPECT_EQ(text.count(u"Es wurde keine Validierung der XML Daten durchgeführt!"), 3);
  EXPECT_FALSE(text.contains(u"ICCSN"));
}

TEST_F(EgkReportTest, TheDocumentHoldsElementsValidationsAndStatus) {
  Validate();
  const QJsonObject egk = Json(1);
  EXPECT_EQ(egk.value(u"iccsn").toString(), u"80276001230000000017");
  EXPECT_EQ(egk.value(u"statusVd").toString(), Status);
  EXPECT_EQ(egk.value(u"storedStatus").toString(), u"");
  const std::tuple<const char16_t*, int, const char16_t*, const char16_t*, const char16_t*> kinds[]{
      {u"pd", 11, u"Versicherten_ID", u"A000000017", u"UC_PersoenlicheVersichertendatenXML"},
      {u"vd", 5, u"Beginn", u"01.01.2015", u"UC_allgemeineVersicherungsdatenXML"},
      {u"gvd", 4, u"BesonderePersonengruppe", u"04", u"UC_geschuetzteVersichertendatenXML"},
  };
  for (const auto& [kind, count, name, value, schema] : kinds) {
    const QJsonObject document = egk.value(QStringView(kind)).toObject();
    EXPECT_TRUE(document.value(u"validated").toBool());
    EXPECT_EQ(document.value(u"validation").toString(),
              u"Die lokale Validierung der XML Daten \r\nmittels vorgegebenen Schema für " +
                  QStringView(schema) + u" (5.2.0)\r\nwar erfolgreich!");
    const QJsonArray fields = document.value(u"fields").toArray();
    ASSERT_EQ(fields.size(), count);
    EXPECT_EQ(fields[0].toObject().value(u"name").toString(), name);
    EXPECT_EQ(fields[0].toObject().value(u"value").toString(), value);
  }
}

TEST_F(EgkReportTest, TheDocumentHoldsTheStoredStatus) {
  const QJsonObject egk = Json(3);
  EXPECT_EQ(egk.value(u"iccsn").toString(), u"");
  EXPECT_EQ(egk.value(u"statusVd").toString(), u"");
  EXPECT_EQ(egk.value(u"storedStatus").toString(), Status);
  EXPECT_EQ(egk.value(u"storedDate").toString(), u"05032024");
  EXPECT_EQ(egk.value(u"storedApproval").toString(), u"DENRV;DEMOTERM;001.002.003:004.005.006");
  EXPECT_EQ(egk.value(u"storedChecksum").toString(), u"22");
  EXPECT_FALSE(egk.value(u"pd").toObject().value(u"validated").toBool());
  EXPECT_EQ(egk.value(u"vd").toObject().value(u"validation").toString(),
            u"Es wurde keine Validierung der XML Daten durchgeführt!");
}

}  // namespace
}  // namespace kartocheck::test
