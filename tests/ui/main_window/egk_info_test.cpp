#include "ui/main_window/egk_info.h"

#include <gtest/gtest.h>

#include "support/printing.h"

// What the eGK window shows.

namespace kartocheck::test {
namespace {

EgkInfo InfoOf(const EgkData& egk, bool isMobile = false) {
  TerminalInfo info;
  info.Reset95 = isMobile;
  return EgkInfoOf(info, egk);
}

void ExpectLines(const EgkInfo& info, const std::array<const char16_t*, InfoLineCount>& expected) {
  for (std::size_t number = 0; number < expected.size(); ++number) {
    EXPECT_EQ(info.lines[number].text, expected[number]) << "label " << number;
  }
}

void ExpectToolTips(const EgkInfo& info,
                    const std::array<const char16_t*, InfoLineCount>& expected) {
  for (std::size_t number = 0; number < expected.size(); ++number) {
    EXPECT_EQ(info.lines[number].toolTip.toString(), expected[number]) << "label " << number;
  }
}

constexpr const char16_t* StatusTip =
    u"Status der Versichertenstammdaten (VSD). (0x30) 0 = Keine Transaktion ist offen. (0x31) 1 = "
    u"Transaktion ist offen.";
constexpr const char16_t* TimestampTip =
    u"Timestamp der letzten Aktualisierung der VSD auf dem VSDD im Format YYYYMMDDhhmmss";
constexpr const char16_t* VersionTip =
    u"Versionsnummer der Versichertenstammdaten (VSD) Struktur im Format XXXYYYZZZZ. [BCD]";
constexpr const char16_t* ReservedTip = u"Reserviert [BINÄR]";

// Status 30, time 20240305101112, version 005.002.0000, reserved 0102030405.
constexpr const char16_t* Status =
    u"303230323430333035313031313132"
    u"0050020000"
    u"0102030405";

TEST(EgkInfoCardTest, SplitsSerialNumberAndStatus) {
  EgkData egk;
  egk.iccsn = QStringLiteral("80276001234567890123");
  egk.statusText = QStringView(Status).toString();
  const EgkInfo info = InfoOf(egk);
  EXPECT_EQ(info.infoCaption, u"Stationäres Kartenterminal:");
  EXPECT_EQ(info.infoCommand, u"ICC Info");
  EXPECT_EQ(info.infoCommandToolTip, u"Informationen zur Chipkarte. ");
  ExpectLines(info,
              {u"", u"", u"eGK EF.GDO: Integrated Circuit Card Serial Number (ICCSN)",
               u"ICC Serial Number:       0x80276001234567890123", u"Major Industry Identifier: 80",
               u"Country Code:                276", u"Issuer Identifier:              00123",
               u"Serial Number (SN):                  4567890123", u"",
               u"eGK DF.HCA(Health Care Application) EF.StatusVD: VSD-Status-Container",
               u"Containerinhalt: 0x30323032343033303531303131313200500200000102030405",
               u"Status:            30", u"Timestamp:           3230323430333035313031313132",
               u"Version:                                         0050020000",
               u"Reserviert:                                                0102030405"});
  ExpectToolTips(info, {u"", u"", u"", u"", u"", u"", u"", u"", u"", u"", u"", StatusTip,
                        TimestampTip, VersionTip, ReservedTip});
}

TEST(EgkInfoCardTest, PartsStandBelowTheirDigitsOfTheWholeText) {
  EgkData egk;
  egk.iccsn = QStringLiteral("abcdefghijklmnopqrst");
  egk.statusText = QStringLiteral("ab") + QString(28, u'c') + QString(10, u'd') + QString(10, u'e');
  const EgkInfo info = InfoOf(egk);
  const auto column = [&](std::size_t line, const char16_t* text) {
    return info.lines[line].text.indexOf(QStringView(text));
  };
  EXPECT_EQ(column(4, u"ab"), column(3, u"ab"));
  EXPECT_EQ(column(5, u"cde"), column(3, u"cde"));
  EXPECT_EQ(column(6, u"fghij"), column(3, u"fghij"));
  EXPECT_EQ(column(7, u"klmnopqrst"), column(3, u"klmnopqrst"));
  EXPECT_EQ(column(11, u"ab"), column(10, u"ab"));
  EXPECT_EQ(column(12, u"cccc"), column(10, u"cccc"));
  EXPECT_EQ(column(13, u"dddd"), column(10, u"dddd"));
  EXPECT_EQ(column(14, u"eeee"), column(10, u"eeee"));
}

TEST(EgkInfoCardTest, ASlotWithoutDataShowsTheCaptions) {
  ExpectLines(InfoOf({}), {u"", u"", u"eGK EF.GDO: Integrated Circuit Card Serial Number (ICCSN)",
                           u"ICC Serial Number:       0x", u"Major Industry Identifier: ",
                           u"Country Code:                ", u"Issuer Identifier:              ",
                           u"Serial Number (SN):                  ", u"",
                           u"eGK DF.HCA(Health Care Application) EF.StatusVD: VSD-Status-Container",
                           u"Containerinhalt: 0x", u"Status:            ", u"Timestamp:           ",
                           u"Version:                                         ",
                           u"Reserviert:                                                "});
}

TEST(EgkInfoCardTest, AShortSerialNumberShowsWhatThereIs) {
  EgkData egk;
  egk.iccsn = QStringLiteral("8027600");
  const EgkInfo info = InfoOf(egk);
  EXPECT_EQ(info.lines[3].text, u"ICC Serial Number:       0x8027600");
  EXPECT_EQ(info.lines[5].text, u"Country Code:                276");
  EXPECT_EQ(info.lines[6].text, u"Issuer Identifier:              00");
  EXPECT_EQ(info.lines[7].text, u"Serial Number (SN):                  ");
}

TEST(EgkInfoCardTest, ATooLongStatusIsShownWholeAndItsPartsStayTheSame) {
  EgkData egk;
  egk.statusText = QStringView(Status).toString() + u"FFFF";
  const EgkInfo info = InfoOf(egk);
  EXPECT_EQ(info.lines[10].text,
            u"Containerinhalt: 0x30323032343033303531303131313200500200000102030405FFFF");
  EXPECT_EQ(info.lines[14].text,
            u"Reserviert:                                                0102030405");
}

EgkData StoredRecord() {
  EgkData egk;
  egk.stored.statusText = QStringView(Status).toString();
  egk.stored.readingDate.tlv = QStringLiteral("91083035303332303234");
  egk.stored.storedDate = QStringLiteral("20240305");
  egk.stored.convertedDate = QStringLiteral("05.03.2024");
  egk.stored.approval.tlv = QStringLiteral("9205") + QStringLiteral("3132333435");
  egk.stored.approvalNumber = QStringLiteral("DENRV;TERM;1.0:2.0");
  egk.stored.checksumText = QStringLiteral("A7");
  return egk;
}

TEST(EgkInfoStoredTest, SplitsTheStoredStatus) {
  const EgkInfo info = InfoOf(StoredRecord(), true);
  EXPECT_EQ(info.infoCaption, u"Mobiles Kartenterminal:");
  EXPECT_EQ(info.infoCommand, u"VSD Info");
  EXPECT_EQ(info.infoCommandToolTip, u"Informationen zum gespeicherten VSD-Status. ");
  ExpectLines(
      info, {u"", u"", u"Gespeicherter VSD-Status-Datensatz aus dem mobilen Kartenterminal",
             u"VSDStatus: 0x30323032343033303531303131313200500200000102030405",
             u"Status:          30", u"Timestamp:         3230323430333035313031313132",
             u"Version:                                       0050020000",
             u"Reserviert:                                              0102030405", u"",
             u"+ die erweiterten Daten des VSD-Status-Datensates:", u"Einlesedatum:     05.03.2024",
             u"TLV: 0x91083035303332303234", u"Zulassungsnummer: DENRV;TERM;1.0:2.0",
             u"TLV: 0x92053132333435               ", u"Prüfsumme XOR (TLV): 0x9301A7"});
  ExpectToolTips(
      info,
      {u"", u"", u"", u"", StatusTip, TimestampTip, VersionTip, ReservedTip, u"", u"",
       u"Einlesedatum: TTMMJJJJ", u"TLV: TTMMJJJJ (ASCII)",
       u"Hersteller-ID;ProduktKürzel;Produktversion(=Firmwareversion:Hardwareversion)",
       u"TLV: Hersteller-ID;ProduktKürzel;Produktversion(=Firmwareversion:Hardwareversion)", u""});
}

TEST(EgkInfoStoredTest, ASlotWithoutDataShowsTheCaptions) {
  ExpectLines(
      InfoOf({}, true),
      {u"", u"", u"Gespeicherter VSD-Status-Datensatz aus dem mobilen Kartenterminal",
       u"VSDStatus: 0x", u"Status:          ", u"Timestamp:         ",
       u"Version:                                       ",
       u"Reserviert:                                              ", u"",
       u"+ die erweiterten Daten des VSD-Status-Datensates:", u"Einlesedatum:     ", u"TLV: 0x",
       u"Zulassungsnummer: ", u"TLV: 0x               ", u"Prüfsumme XOR (TLV): 0x9301"});
}

TEST(EgkInfoStoredTest, ADateOfUnknownFormIsShownAsItIsStored) {
  EgkData egk = StoredRecord();
  egk.stored.convertedDate.clear();
  egk.stored.storedDate = QStringLiteral("2024-3-5");
  EXPECT_EQ(InfoOf(egk, true).lines[10].text, u"Einlesedatum:     2024-3-5");
}

TEST(EgkInfoStoredTest, TheApprovalNumbersObjectIsPartedAfterSixtyCharacters) {
  const std::pair<int, std::pair<int, int>> rows[] = {
      {59, {59, 0}}, {60, {60, 0}}, {61, {60, 1}}, {80, {60, 20}}};
  for (const auto& [length, parts] : rows) {
    EgkData egk;
    egk.stored.approval.tlv = QString(length, u'A');
    EXPECT_EQ(InfoOf(egk, true).lines[13].text, u"TLV: 0x" + QString(parts.first, u'A') +
                                                    QString(15, u' ') + QString(parts.second, u'A'))
        << length;
  }
}

TEST(EgkInfoListTest, HeadingsFollowTheKind) {
  const EgkInfo info = InfoOf({});
  EXPECT_EQ(info.lists[VsdKind::Pd].heading, u"Persönliche Versichertendaten:\r\n");
  EXPECT_EQ(info.lists[VsdKind::Vd].heading, u"Allgemeine Versicherungsdaten:\r\n");
  EXPECT_EQ(info.lists[VsdKind::Gvd].heading, u"Geschützte Versichertendaten:\r\n");
  EXPECT_EQ(info.lists[VsdKind::Pd].valueHeading, u"Versichertendaten");
  EXPECT_EQ(info.lists[VsdKind::Vd].valueHeading, u"Versicherungsdaten");
  EXPECT_EQ(info.lists[VsdKind::Gvd].valueHeading, u"Versichertendaten");
}

TEST(EgkInfoListTest, FilledRowsStandInTableOrder) {
  EgkData egk;
  FieldTable& fields = egk.documents[VsdKind::Vd].fields;
  fields[0] = {QStringLiteral("Beginn"), QStringLiteral("01.01.2020")};
  fields[3] = {QStringLiteral("Name"), QString()};
  fields[9] = {QString(), QStringLiteral("72")};
  fields[59] = {QStringLiteral("Letzte"), QStringLiteral("Zeile")};
  egk.documents[VsdKind::Vd].validationText = QStringLiteral("geprüft");
  const EgkInfo info = InfoOf(egk);
  const std::vector<VsdField> expected{fields[0], fields[3], fields[9], fields[59]};
  EXPECT_EQ(info.lists[VsdKind::Vd].rows, expected);
  EXPECT_EQ(info.lists[VsdKind::Vd].validationText, u"geprüft");
  EXPECT_TRUE(info.lists[VsdKind::Pd].rows.empty());
  EXPECT_TRUE(info.lists[VsdKind::Gvd].rows.empty());
}

TEST(EgkInfoXmlTest, DocumentsStandUnderTheirTitles) {
  EgkData egk;
  egk.documents[VsdKind::Pd].xmlText = QStringLiteral("<a/>");
  egk.documents[VsdKind::Vd].xmlText = QStringLiteral("<b>\r\n  &amp; </b>");
  egk.documents[VsdKind::Gvd].xmlText = QStringLiteral("<c/>");
  EXPECT_EQ(InfoOf(egk).xmlTexts,
            u"Persönliche Versichertendaten (XML)\r\n<a/>\r\n\r\n"
            u"Allgemeine Versicherungsdaten (XML)\r\n<b>\r\n  &amp; </b>\r\n\r\n"
            u"Geschützte Versichertendaten (XML)\r\n<c/>");
}

TEST(EgkInfoXmlTest, TitlesStandWithoutDocumentsToo) {
  EXPECT_EQ(InfoOf({}).xmlTexts,
            u"Persönliche Versichertendaten (XML)\r\n\r\n\r\n"
            u"Allgemeine Versicherungsdaten (XML)\r\n\r\n\r\n"
            u"Geschützte Versichertendaten (XML)\r\n");
}

TEST(ValidationHelpTest, TellsTheStepsOneALine) {
  EXPECT_EQ(
      ValidationHelp(),
      u"Für eine lokale Validierung muss MSXML 4.0 SP2 (Microsoft XML Basisdienste) auf Ihrem "
      u"System installiert sein! \r\n"
      u"KartoCheck verwendet zur lokalen Validierung der XML Daten vorgegebene Schemas für "
      u"UC_allgemeineVersicherungsdatenXML, UC_PersoenlicheVersichertendatenXML und "
      u"UC_geschuetzteVersichertendatenXML, die das Attribut CDM_VERSION mit den fixen Wert 5.2.0 "
      u"vorgeben.\r\n"
      u"Zur Validierung können auch andere Schemas verwendet werden.\r\n"
      u"1. Klicken Sie im Menü Datei auf Validierung.\r\n"
      u"2. Klicken Sie im Menü Datei auf Neues Schema laden.\r\n"
      u"3. Laden Sie eine entsprechende Schemadatei.\r\n"
      u"4. Klicken Sie auf Anzeigefelder zurücksetzen.\r\n"
      u"5. Klicken Sie auf Krankenversichertendaten lesen.");
}

}  // namespace
}  // namespace kartocheck::test
