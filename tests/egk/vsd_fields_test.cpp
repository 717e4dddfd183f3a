#include "egk/vsd_fields.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "egk/egk_data.h"
#include "support/printing.h"

namespace kartocheck {
namespace {

using Mapping = void (*)(const XmlElement&, FieldTable&, InsuredData&);

class VsdFields : public testing::Test {
 protected:
  void Map(Mapping mapping, const QString& content) {
    const auto document = XmlDocument::Parse(QString(u"<r>" % content % u"</r>"));
    ASSERT_TRUE(document) << content.toStdString();
    mapping(document->Root(), fields_, insured_);
  }

  void ExpectRow(std::size_t row, QStringView name, QStringView value) {
    EXPECT_EQ(fields_.at(row).name, name) << "row " << row;
    EXPECT_EQ(fields_.at(row).value, value) << "row " << row;
  }
  void ExpectOnlyRows(std::initializer_list<std::size_t> rows) {
    for (std::size_t row = 0; row < fields_.size(); ++row) {
      const bool isExpected = std::find(rows.begin(), rows.end(), row) != rows.end();
      EXPECT_EQ(!fields_.at(row).IsEmpty(), isExpected) << "row " << row;
    }
  }

  FieldTable fields_;
  InsuredData insured_;
};

// One element on its own: its row and its element of the insured person's data.
struct SingleRow {
  std::string sentence;
  Mapping mapping;
  QString around;  // %1 stands for the element
  QString element;
  std::size_t row;
  QString name;
  int insured;  // -1: none
};

std::vector<SingleRow> SingleRows() {
  std::vector<SingleRow> rows;
  const auto add = [&rows](Mapping mapping, const char* kind, const char16_t* element,
                           std::size_t row, int insured, const char16_t* around = u"%1",
                           const char16_t* prefix = u"", const char16_t* suffix = u"") {
    const QString name = QString::fromUtf16(element);
    const QString sentence = QString::fromLatin1(kind) + name + u'_' + QString::number(rows.size());
    rows.push_back({sentence.toStdString(), mapping, QString::fromUtf16(around), name, row,
                    QString::fromUtf16(prefix) + name + QString::fromUtf16(suffix), insured});
  };
  const char16_t* const street = u"<StrassenAdresse>%1</StrassenAdresse>";
  const char16_t* const postBox = u"<PostfachAdresse>%1</PostfachAdresse>";
  const char16_t* const address = u"<Anschrift>%1</Anschrift>";
  const char16_t* const first = u" (1. Anschrift) ";
  const char16_t* const second = u" (2. Anschrift) ";

  add(MapPdFields, "Pd", u"Versicherten_ID", 0, 2);
  add(MapPdFields, "Pd", u"Nachname", 2, 9);
  add(MapPdFields, "Pd", u"Geschlecht", 3, -1);
  add(MapPdFields, "Pd", u"Vorsatzwort", 4, -1);
  add(MapPdFields, "Pd", u"Titel", 19, 6);
  add(MapPdFields, "Pd", u"Namenszusatz", 20, 8);
  add(MapPdFields, "Pd", u"Vorname", 21, 7);
  for (const char16_t* const block : {street, address}) {
    add(MapPdFields, "Pd", u"Postleitzahl", 5, 13, block, u"", first);
    add(MapPdFields, "Pd", u"Ort", 6, 14, block, u"", first);
    add(MapPdFields, "Pd", u"Wohnsitzlaendercode", 7, 12, block, u"", first);
    add(MapPdFields, "Pd", u"Anschriftenzusatz", 10, -1, block, u"", first);
    add(MapPdFields, "Pd", u"Strasse", 8, -1, block, u"", first);
    add(MapPdFields, "Pd", u"Hausnummer", 9, -1, block, u"", first);
    add(MapPdFields, "Pd", u"Postfach", 11, -1, block, u"", first);
  }
  add(MapPdFields, "Pd", u"Postleitzahl", 12, 13, postBox, u"", second);
  add(MapPdFields, "Pd", u"Ort", 13, 14, postBox, u"", second);
  add(MapPdFields, "Pd", u"Wohnsitzlaendercode", 14, 12, postBox, u"", second);
  add(MapPdFields, "Pd", u"Strasse", 15, -1, postBox, u"", second);
  add(MapPdFields, "Pd", u"Hausnummer", 16, -1, postBox, u"", second);
  add(MapPdFields, "Pd", u"Anschriftenzusatz", 17, -1, postBox, u"", second);
  add(MapPdFields, "Pd", u"Postfach", 18, -1, postBox, u"", second);

  const char16_t* const settling51 =
      u"<Abrechnender_Kostentraeger_Institution>%1</Abrechnender_Kostentraeger_Institution>";
  const char16_t* const settling52 = u"<AbrechnenderKostentraeger>%1</AbrechnenderKostentraeger>";
  const char16_t* const settling = u" (Inst._Abr._Kostentr.) ";
  add(MapVdFields, "Vd", u"Beginn", 0, -1);
  add(MapVdFields, "Vd", u"Begin", 0, -1);
  add(MapVdFields, "Vd", u"Ende", 1, 15);
  add(MapVdFields, "Vd", u"Kostentraegerkennung", 2, 1);
  add(MapVdFields, "Vd", u"Name", 3, 0);
  add(MapVdFields, "Vd", u"Wohnsitzlaendercode", 4, 12);
  add(MapVdFields, "Vd", u"Kostenerstattung_ambulant", 5, -1);
  add(MapVdFields, "Vd", u"Kostenerstattung_stationaer", 6, -1);
  for (const char16_t* const block : {settling51, settling52}) {
    add(MapVdFields, "Vd", u"Kostentraegerkennung", 7, -1, block, u"", settling);
    add(MapVdFields, "Vd", u"Kostentraegerkennung1", 7, -1, block, u"", settling);
    add(MapVdFields, "Vd", u"Name", 8, -1, block, u"", settling);
    add(MapVdFields, "Vd", u"Name1", 8, -1, block, u"", settling);
  }
  add(MapVdFields, "Vd", u"WOP", 9, 3);
  add(MapVdFields, "Vd", u"Versichertenstatus_RSA", 10, 4);
  add(MapVdFields, "Vd", u"Rechtskreis", 11, 5);
  add(MapVdFields, "Vd", u"Versichertenart", 12, -1);
  add(MapVdFields, "Vd", u"PKV_Verbandstarif", 13, -1);
  add(MapVdFields, "Vd", u"Prozentsatz_Wahlleistung_Unterkunft", 14, -1);
  add(MapVdFields, "Vd", u"Hoechstsatz_Wahlleistung_Unterkunft", 15, -1);
  add(MapVdFields, "Vd", u"Prozentsatz_Wahlleistung_aerztliche_Behandlung", 16, -1);
  add(MapVdFields, "Vd", u"Stationaere_Wahlleistung_Unterkunft", 17, -1);
  add(MapVdFields, "Vd", u"Stationaere_Wahlleistung_aerztliche_Behandlung", 18, -1);
  add(MapVdFields, "Vd", u"Teilnahme_ClinicCard_Verfahren", 19, -1);
  add(MapVdFields, "Vd", u"Kennzeichnung", 20, -1);

  const char16_t* const copayment = u"<Zuzahlungsstatus>%1</Zuzahlungsstatus>";
  add(MapGvdFields, "Gvd", u"Besondere_Personengruppe", 0, -1);
  add(MapGvdFields, "Gvd", u"BesonderePersonengruppe", 0, -1);
  add(MapGvdFields, "Gvd", u"DMP", 1, -1);
  add(MapGvdFields, "Gvd", u"DMP_Kennzeichnung", 1, -1);
  add(MapGvdFields, "Gvd", u"Status", 2, -1, copayment, u"ZUZAHLUNGSSTATUS\\");
  add(MapGvdFields, "Gvd", u"Gueltig_bis", 3, -1, copayment, u"ZUZAHLUNGSSTATUS\\");
  return rows;
}

class SingleField : public VsdFields, public testing::WithParamInterface<SingleRow> {
 protected:
  void MapElement(const QString& written) {
    Map(GetParam().mapping, GetParam().around.arg(QStringLiteral("<%1>Wert</%1>").arg(written)));
  }
  void ExpectMapped(const QString& written) {
    QString name = GetParam().name;
    name.replace(GetParam().element, written);
    ExpectRow(GetParam().row, name, u"Wert");
    ExpectOnlyRows({GetParam().row});
    for (int element = 0; element < ElementCount; ++element) {
      if (element == static_cast<int>(Element::Street)) continue;  // put together from three rows
      EXPECT_EQ(insured_[static_cast<Element>(element)],
                element == GetParam().insured ? QStringLiteral("Wert") : QString())
          << "element " << element;
    }
  }
};

TEST_P(SingleField, FillsItsRowAndElement) {
  MapElement(GetParam().element);
  ExpectMapped(GetParam().element);
}

TEST_P(SingleField, IsMatchedInUpperCase) {
  MapElement(GetParam().element.toUpper());
  ExpectMapped(GetParam().element.toUpper());
}

TEST_P(SingleField, IsMatchedInLowerCase) {
  MapElement(GetParam().element.toLower());
  ExpectMapped(GetParam().element.toLower());
}

TEST_P(SingleField, IsMatchedWithAPrefixInContainersAtAnyDepth) {
  const QString element =
      QStringLiteral("<p:b><c><p:%1>Wert</p:%1></c></p:b>").arg(GetParam().element);
  Map(GetParam().mapping,
      QString(u"<x xmlns:p='urn:p'><y><z>" % GetParam().around.arg(element) % u"</z></y></x>"));
  ExpectMapped(GetParam().element);
}

TEST_P(SingleField, IsNotMatchedByALongerOrShorterName) {
  MapElement(GetParam().element + QStringLiteral("X"));
  MapElement(GetParam().element.sliced(1));
  ExpectOnlyRows({});
}

INSTANTIATE_TEST_SUITE_P(Elements, SingleField, testing::ValuesIn(SingleRows()),
                         [](const auto& row) { return row.param.sentence; });

TEST_F(VsdFields, EveryRowOfEveryKindIsCovered) {
  std::array<std::set<std::size_t>, VsdKindCount> rows;
  for (const SingleRow& row : SingleRows()) {
    const std::size_t kind = row.mapping == MapPdFields ? 0 : row.mapping == MapVdFields ? 1 : 2;
    rows.at(kind).insert(row.row);
  }
  EXPECT_EQ(rows[0].size() + 1, 22U);  // the birth date has tests of its own
  EXPECT_EQ(rows[1].size(), 21U);
  EXPECT_EQ(rows[2].size(), 4U);
}

// Birth date

TEST_F(VsdFields, BirthDateStaysInItsRowAndIsConvertedForTheInsuredPerson) {
  Map(MapPdFields, QStringLiteral("<Geburtsdatum>19640812</Geburtsdatum>"));
  ExpectRow(1, u"Geburtsdatum", u"19640812");
  EXPECT_EQ(insured_[Element::BirthDate], QStringLiteral("12.08.1964"));
  Map(MapPdFields, QStringLiteral("<GEBURTSDATUM>19661301</GEBURTSDATUM>"));
  ExpectRow(1, u"GEBURTSDATUM", u"19661301");
  EXPECT_EQ(insured_[Element::BirthDate], QStringLiteral("01.13.1966"));
}

TEST_F(VsdFields, UnknownDayAndMonthOfTheBirthDateStayZero) {
  Map(MapPdFields, QStringLiteral("<Geburtsdatum>19660000</Geburtsdatum>"));
  EXPECT_EQ(insured_[Element::BirthDate], QStringLiteral("00.00.1966"));
}

TEST_F(VsdFields, BirthDateOfAnotherFormLeavesTheElementAsItIs) {
  insured_[Element::BirthDate] = QStringLiteral("vorher");
  for (const char* const text : {"", "1964", "1964081", "196408122", "1964-8-12", "1964AB12",
                                 "19640A12", "1964 812", "12.08.1964", "1964+812"}) {
    const QString date = QString::fromLatin1(text);
    Map(MapPdFields, QString(u"<Geburtsdatum>" % date % u"</Geburtsdatum>"));
    EXPECT_EQ(insured_[Element::BirthDate], QStringLiteral("vorher")) << text;
    ExpectRow(1, u"Geburtsdatum", date);
  }
}

// Validity

TEST_F(VsdFields, BeginningAndEndAreShownWithPoints) {
  Map(MapVdFields, QStringLiteral("<Beginn>20190401</Beginn><Ende>20261200</Ende>"));
  ExpectRow(0, u"Beginn", u"01.04.2019");
  ExpectRow(1, u"Ende", u"00.12.2026");
  EXPECT_EQ(insured_[Element::ValidUntil], QStringLiteral("00.12.2026"));
}

TEST_F(VsdFields, BeginningAndEndOfAnotherFormStayAsTheyAre) {
  Map(MapVdFields, QStringLiteral("<Beginn>04/2019</Beginn><Ende>unbefristet</Ende>"));
  ExpectRow(0, u"Beginn", u"04/2019");
  ExpectRow(1, u"Ende", u"unbefristet");
  EXPECT_EQ(insured_[Element::ValidUntil], QStringLiteral("unbefristet"));
}

// Addresses

const QString StreetBlock = QStringLiteral(
    "<StrassenAdresse><Postleitzahl>11111</Postleitzahl><Ort>Einsdorf</Ort><Land>"
    "<Wohnsitzlaendercode>A</Wohnsitzlaendercode></Land></StrassenAdresse>");
const QString PostBoxBlock = QStringLiteral(
    "<PostfachAdresse><Postleitzahl>22222</Postleitzahl><Ort>Zweistadt</Ort><Land>"
    "<Wohnsitzlaendercode>B</Wohnsitzlaendercode></Land></PostfachAdresse>");

TEST_F(VsdFields, StreetAddressIsTheFirstBlockInEitherOrder) {
  for (const QString& both :
       {QString(StreetBlock + PostBoxBlock), QString(PostBoxBlock + StreetBlock)}) {
    fields_ = {};
    insured_.Clear();
    Map(MapPdFields, both);
    ExpectRow(5, u"Postleitzahl (1. Anschrift) ", u"11111");
    ExpectRow(6, u"Ort (1. Anschrift) ", u"Einsdorf");
    ExpectRow(7, u"Wohnsitzlaendercode (1. Anschrift) ", u"A");
    ExpectRow(12, u"Postleitzahl (2. Anschrift) ", u"22222");
    ExpectRow(13, u"Ort (2. Anschrift) ", u"Zweistadt");
    ExpectRow(14, u"Wohnsitzlaendercode (2. Anschrift) ", u"B");
    EXPECT_EQ(insured_[Element::PostalCode], QStringLiteral("11111"));
    EXPECT_EQ(insured_[Element::Town], QStringLiteral("Einsdorf"));
    EXPECT_EQ(insured_[Element::CountryCode], QStringLiteral("A"));
  }
}

TEST_F(VsdFields, SecondBlockIsTheInsuredPersonsWhereThereIsNoFirst) {
  Map(MapPdFields, PostBoxBlock);
  EXPECT_EQ(insured_[Element::PostalCode], QStringLiteral("22222"));
  EXPECT_EQ(insured_[Element::Town], QStringLiteral("Zweistadt"));
  EXPECT_EQ(insured_[Element::CountryCode], QStringLiteral("B"));
}

// The blocks are not mixed.
TEST_F(VsdFields, SecondBlockFillsNoGapOfTheFirst) {
  Map(MapPdFields,
      PostBoxBlock + QStringLiteral("<StrassenAdresse><Ort>Einsdorf</Ort></StrassenAdresse>"));
  EXPECT_EQ(insured_[Element::PostalCode], QString());
  EXPECT_EQ(insured_[Element::Town], QStringLiteral("Einsdorf"));
  EXPECT_EQ(insured_[Element::CountryCode], QString());
}

TEST_F(VsdFields, AddressContainersTakeTheBlocksInDocumentOrder) {
  Map(MapPdFields,
      QStringLiteral("<Anschrift><Ort>A</Ort></Anschrift><ANSCHRIFT><Ort>B</Ort></ANSCHRIFT>"
                     "<Anschrift><Ort>C</Ort></Anschrift>"));
  ExpectRow(6, u"Ort (1. Anschrift) ", u"A");
  ExpectRow(13, u"Ort (2. Anschrift) ", u"B");
  ExpectOnlyRows({6, 13});
  EXPECT_EQ(insured_[Element::Town], QStringLiteral("A"));
}

TEST_F(VsdFields, BothContainersOfStreetAddressesTakeTheBlocksInDocumentOrder) {
  const QString anschrift = QStringLiteral(
      "<Anschrift><Ort>A</Ort><Strasse>Weg</Strasse><Postfach>1</Postfach></Anschrift>");
  const QString street = QStringLiteral(
      "<StrassenAdresse><Ort>B</Ort><Strasse>Gasse</Strasse><Hausnummer>2</Hausnummer>"
      "</StrassenAdresse>");
  Map(MapPdFields, anschrift + street);
  ExpectRow(6, u"Ort (1. Anschrift) ", u"A");
  ExpectRow(8, u"Strasse (1. Anschrift) ", u"Weg");
  ExpectRow(11, u"Postfach (1. Anschrift) ", u"1");
  ExpectRow(13, u"Ort (2. Anschrift) ", u"B");
  ExpectRow(15, u"Strasse (2. Anschrift) ", u"Gasse");
  ExpectRow(16, u"Hausnummer (2. Anschrift) ", u"2");
  ExpectOnlyRows({6, 8, 11, 13, 15, 16});
  EXPECT_EQ(insured_[Element::Town], QStringLiteral("A"));
  EXPECT_EQ(insured_[Element::Street], QStringLiteral("Weg  "));

  fields_ = {};
  insured_.Clear();
  Map(MapPdFields, street + anschrift);
  ExpectRow(6, u"Ort (1. Anschrift) ", u"B");
  ExpectRow(9, u"Hausnummer (1. Anschrift) ", u"2");
  ExpectRow(13, u"Ort (2. Anschrift) ", u"A");
  ExpectRow(18, u"Postfach (2. Anschrift) ", u"1");
  ExpectOnlyRows({6, 8, 9, 13, 15, 18});
  EXPECT_EQ(insured_[Element::Town], QStringLiteral("B"));
  EXPECT_EQ(insured_[Element::Street], QStringLiteral("Gasse 2 "));
}

TEST_F(VsdFields, TwoStreetAddressesAreTwoBlocks) {
  Map(MapPdFields, QStringLiteral("<StrassenAdresse><Ort>A</Ort></StrassenAdresse>"
                                  "<STRASSENADRESSE><Ort>B</Ort></STRASSENADRESSE>"));
  ExpectRow(6, u"Ort (1. Anschrift) ", u"A");
  ExpectRow(13, u"Ort (2. Anschrift) ", u"B");
  EXPECT_EQ(insured_[Element::Town], QStringLiteral("A"));
}

// Whatever the blocks are, no row mixes two addresses.
TEST_F(VsdFields, AnAddressThatFindsNoBlockLeftIsNotStored) {
  for (const char* const blocks : {"SAP", "ASP", "AAP", "PSA", "PPS", "SPP", "SPS", "ASS"}) {
    SCOPED_TRACE(blocks);
    fields_ = {};
    insured_.Clear();
    QString content;
    int number = 0;
    for (const char block : std::string(blocks)) {
      const QString name = block == 'A'   ? QStringLiteral("Anschrift")
                           : block == 'S' ? QStringLiteral("StrassenAdresse")
                                          : QStringLiteral("PostfachAdresse");
      content += QStringLiteral("<%1><Ort>Ort %2</Ort><Postleitzahl>%2</Postleitzahl></%1>")
                     .arg(name)
                     .arg(++number);
    }
    Map(MapPdFields, content);
    ExpectOnlyRows({5, 6, 12, 13});
    EXPECT_EQ(fields_[6].value, u"Ort " + fields_[5].value);
    EXPECT_EQ(fields_[13].value, u"Ort " + fields_[12].value);
    EXPECT_NE(fields_[5].value, fields_[12].value);
    EXPECT_EQ(insured_[Element::Town], fields_[6].value);
    EXPECT_EQ(insured_[Element::PostalCode], fields_[5].value);
  }
}

TEST_F(VsdFields, AStreetAddressInsideAnAddressIsPartOfIt) {
  Map(MapPdFields,
      QStringLiteral("<Anschrift><Ort>A</Ort><StrassenAdresse><Strasse>Weg</Strasse>"
                     "</StrassenAdresse></Anschrift><Anschrift><Ort>B</Ort></Anschrift>"));
  ExpectRow(6, u"Ort (1. Anschrift) ", u"A");
  ExpectRow(8, u"Strasse (1. Anschrift) ", u"Weg");
  ExpectRow(13, u"Ort (2. Anschrift) ", u"B");
  ExpectOnlyRows({6, 8, 13});
}

TEST_F(VsdFields, AddressElementsOutsideABlockAreNone) {
  Map(MapPdFields, QStringLiteral("<Ort>A</Ort><Person><Strasse>B</Strasse></Person>"));
  ExpectOnlyRows({});
  EXPECT_EQ(insured_[Element::Town], QString());
}

// Street

struct StreetRow {
  const char* sentence;
  QString elements;
  QString street;
};

class Street : public VsdFields, public testing::WithParamInterface<StreetRow> {};

TEST_P(Street, IsPutTogetherWithSingleBlanks) {
  Map(MapPdFields, QString(u"<StrassenAdresse>" % GetParam().elements % u"</StrassenAdresse>"));
  EXPECT_EQ(insured_[Element::Street], GetParam().street);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Street,
    testing::Values(
        StreetRow{"AllThree",
                  QStringLiteral("<Strasse>Weg</Strasse><Hausnummer>7a</Hausnummer>"
                                 "<Anschriftenzusatz>Hof</Anschriftenzusatz>"),
                  QStringLiteral("Weg 7a Hof")},
        StreetRow{
            "NoHouseNumber",
            QStringLiteral("<Strasse>Weg</Strasse><Anschriftenzusatz>Hof</Anschriftenzusatz>"),
            QStringLiteral("Weg  Hof")},
        StreetRow{"NoSupplement",
                  QStringLiteral("<Strasse>Weg</Strasse><Hausnummer>7a</Hausnummer>"),
                  QStringLiteral("Weg 7a ")},
        StreetRow{"StreetOnly", QStringLiteral("<Strasse>Weg</Strasse>"), QStringLiteral("Weg  ")},
        StreetRow{"SupplementOnly", QStringLiteral("<Anschriftenzusatz>Hof</Anschriftenzusatz>"),
                  QStringLiteral("  Hof")},
        StreetRow{"Nothing", QString(), QStringLiteral("  ")}),
    [](const auto& row) { return std::string(row.param.sentence); });

TEST_F(VsdFields, StreetIsThatOfTheFirstBlock) {
  Map(MapPdFields, QStringLiteral("<PostfachAdresse><Strasse>Postweg</Strasse></PostfachAdresse>"
                                  "<StrassenAdresse><Strasse>Weg</Strasse></StrassenAdresse>"));
  EXPECT_EQ(insured_[Element::Street], QStringLiteral("Weg  "));
}

// Settling insurer

TEST_F(VsdFields, SettlingInsurerTouchesNothingOfTheInsurer) {
  Map(MapVdFields,
      QStringLiteral(
          "<AbrechnenderKostentraeger><Kostentraegerkennung>2</Kostentraegerkennung>"
          "<Name>Zwei</Name><Wohnsitzlaendercode>B</Wohnsitzlaendercode><WOP>2</WOP>"
          "<Ende>20261231</Ende><Rechtskreis>2</Rechtskreis></AbrechnenderKostentraeger>"));
  ExpectOnlyRows({7, 8});
  EXPECT_TRUE(insured_.IsEmpty());
}

TEST_F(VsdFields, InsurerAndSettlingInsurerStandBesideEachOther) {
  const QString insurer =
      QStringLiteral("<Kostentraegerkennung>1</Kostentraegerkennung><Name>Eins</Name>");
  const QString settling = QStringLiteral(
      "<AbrechnenderKostentraeger><Kostentraegerkennung>2</Kostentraegerkennung><Name>Zwei</Name>"
      "</AbrechnenderKostentraeger>");
  for (const QString& both : {QString(insurer + settling), QString(settling + insurer)}) {
    fields_ = {};
    Map(MapVdFields, both);
    ExpectRow(2, u"Kostentraegerkennung", u"1");
    ExpectRow(3, u"Name", u"Eins");
    ExpectRow(7, u"Kostentraegerkennung (Inst._Abr._Kostentr.) ", u"2");
    ExpectRow(8, u"Name (Inst._Abr._Kostentr.) ", u"Zwei");
    EXPECT_EQ(insured_[Element::InsurerName], QStringLiteral("Eins"));
    EXPECT_EQ(insured_[Element::InsurerNumber], QStringLiteral("1"));
  }
}

TEST_F(VsdFields, ElementsOfTheSettlingInsurerElsewhereAreNone) {
  Map(MapVdFields,
      QStringLiteral("<Kostentraegerkennung1>2</Kostentraegerkennung1><Name1>Z</Name1>"));
  ExpectOnlyRows({});
}

// Copayment status

TEST_F(VsdFields, CopaymentStatusGivesThePathOfItsElements) {
  Map(MapGvdFields, QStringLiteral("<ZUZAHLUNGSSTATUS><STATUS>1</STATUS><GUELTIG_BIS>20261231"
                                   "</GUELTIG_BIS></ZUZAHLUNGSSTATUS>"));
  ExpectRow(2, u"ZUZAHLUNGSSTATUS\\STATUS", u"1");
  ExpectRow(3, u"ZUZAHLUNGSSTATUS\\GUELTIG_BIS", u"20261231");
}

TEST_F(VsdFields, StatusOutsideTheCopaymentIsNone) {
  Map(MapGvdFields,
      QStringLiteral("<Status>1</Status><Ruhen><Gueltig_bis>2</Gueltig_bis></Ruhen>"));
  ExpectOnlyRows({});
}

// All kinds

TEST_F(VsdFields, RowsAndElementsThatAreAbsentKeepWhatTheyHeld) {
  fields_[3] = {QStringLiteral("Name"), QStringLiteral("vorher")};
  insured_[Element::InsurerName] = QStringLiteral("vorher");
  Map(MapVdFields, QStringLiteral("<WOP>38</WOP>"));
  ExpectRow(3, u"Name", u"vorher");
  ExpectRow(9, u"WOP", u"38");
  EXPECT_EQ(insured_[Element::InsurerName], QStringLiteral("vorher"));
}

TEST_F(VsdFields, AnEmptyElementFillsItsRowWithNothing) {
  fields_[3] = {QStringLiteral("alt"), QStringLiteral("vorher")};
  insured_[Element::InsurerName] = QStringLiteral("vorher");
  Map(MapVdFields, QStringLiteral("<Name/>"));
  ExpectRow(3, u"Name", u"");
  EXPECT_EQ(insured_[Element::InsurerName], QString());
}

TEST_F(VsdFields, TextIsTakenWithEntitiesCommentsAndSections) {
  Map(MapVdFields, QStringLiteral("<Name>A &amp; B<!-- c --> &#228;<![CDATA[<D>]]></Name>"));
  ExpectRow(3, u"Name", u"A & B ä<D>");
}

TEST_F(VsdFields, TextIsTakenInOneLine) {
  Map(MapVdFields,
      QStringLiteral("<Name>\r\n\t  Kasse\n  am \r\n\t Weg &#13;&#10;&#9; 1 \n</Name>"));
  ExpectRow(3, u"Name", u"Kasse am Weg 1");
  EXPECT_EQ(insured_[Element::InsurerName], QStringLiteral("Kasse am Weg 1"));
  Map(MapVdFields, QStringLiteral("<Name> \n\t </Name>"));
  ExpectRow(3, u"Name", u"");
}

TEST_F(VsdFields, OtherBlanksThanThoseOfXmlBelongToTheText) {
  Map(MapVdFields, QStringLiteral("<Name>&#160;Kasse&#160;&#160;1&#8195;</Name>"));
  ExpectRow(3, u"Name",
            u"\x00A0Kasse\x00A0\x00A0"
            u"1\x2003");
}

TEST_F(VsdFields, ADateWithBlanksAroundItIsADate) {
  for (const char* const text : {" 19640812", "19640812 ", "\n  19640812\r\n", "\t19640812"}) {
    insured_.Clear();
    const QString date = QString::fromLatin1(text);
    Map(MapPdFields, QString(u"<Geburtsdatum>" % date % u"</Geburtsdatum>"));
    ExpectRow(1, u"Geburtsdatum", u"19640812");
    EXPECT_EQ(insured_[Element::BirthDate], QStringLiteral("12.08.1964"));
    Map(MapVdFields, QString(u"<Ende>" % date % u"</Ende>"));
    ExpectRow(1, u"Ende", u"12.08.1964");
    EXPECT_EQ(insured_[Element::ValidUntil], QStringLiteral("12.08.1964"));
  }
  Map(MapPdFields, QStringLiteral("<Geburtsdatum>1964 0812</Geburtsdatum>"));
  ExpectRow(1, u"Geburtsdatum", u"1964 0812");
}

TEST_F(VsdFields, TheRootItselfIsNoField) {
  const auto document = XmlDocument::Parse(u"<Name>Wurzel</Name>");
  ASSERT_TRUE(document);
  MapVdFields(document->Root(), fields_, insured_);
  ExpectOnlyRows({});
}

TEST_F(VsdFields, KindsKnowTheirOwnElementsOnly) {
  const QString all = QStringLiteral("<Nachname>N</Nachname><WOP>1</WOP><DMP>1</DMP>");
  Map(MapPdFields, all);
  ExpectOnlyRows({2});
  fields_ = {};
  Map(MapVdFields, all);
  ExpectOnlyRows({9});
  fields_ = {};
  Map(MapGvdFields, all);
  ExpectOnlyRows({1});
}

}  // namespace
}  // namespace kartocheck
