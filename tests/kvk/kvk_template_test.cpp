#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "kvk/kvk_reading.h"
#include "support/kvk_records.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

const InsuredData PersonOfA =
    ElementTexts({u"AOK Süd", u"1234567", u"123456789", u"00012", u"1000", u"1", u"", u"Änne", u"",
                  u"Größl", u"01021950", u"", u"", u"12345", u"Köln", u"1230", u"ED"});

const InsuredData PersonOfB =
    ElementTexts({u"BKK Beispiel Nordwest", u"7654321", u"987654321012", u"17999", u"5000", u"9",
                  u"Dr.", u"Jörg-Peter", u"von", u"Übermaß", u"31121969", u"Hinter den Höfen 12 a",
                  u"D", u"01067", u"Dresden-Löbtau", u"1128", u"90"});

const InsuredData PersonOfC = ElementTexts({u"BKK Beispiel Nordwest",
                                            u"7654321",
                                            u"987654321012",
                                            u"17999",
                                            u"5000",
                                            u"9",
                                            u"Dr.",
                                            u"Jörg-Peter",
                                            u"von",
                                            u"Übermaß",
                                            u"31121969",
                                            u"Hinter den Höfen 12 a",
                                            u"D",
                                            u"01067",
                                            u"Dresden-Löbtau",
                                            u"1128",
                                            u"90",
                                            u"05032024",
                                            u"109",
                                            u"A0"});

// A record that is long enough for the length check, whatever else a test puts into it.
const DataObject Filler{0x89, "Die lange Stra~e durch das ganze Musterdorf 11"};

TEST(KvkTemplateTest, RecordA) {
  KvkReading reading;
  EXPECT_EQ(reading.Read(SampleRecord(u"A")), KvkResult::Read);
  EXPECT_EQ(reading.insured, PersonOfA);
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
  EXPECT_TRUE(reading.Boxes().empty());
}

TEST(KvkTemplateTest, RecordB) {
  KvkReading reading;
  EXPECT_EQ(reading.Read(SampleRecord(u"B")), KvkResult::Read);
  EXPECT_EQ(reading.insured, PersonOfB);
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
  EXPECT_TRUE(reading.Boxes().empty());
}

TEST(KvkTemplateTest, AFullRecordHasEveryElementOfACardAndTheLongestLength) {
  const QString record = FullTemplateRecord();
  EXPECT_EQ(record.size(), 438);
  KvkReading reading;
  EXPECT_EQ(reading.Read(record), KvkResult::Read);
  for (const ElementDescription& element : ElementTable) {
    if (element.Part != ElementPart::Card || element.Width == 0) continue;
    EXPECT_FALSE(reading.insured[element.Which].isEmpty()) << element.Key;
  }
}

TEST(KvkTemplateTest, RecordBAs6082PassesWithoutTheLastTwoBytes) {
  InsuredData expected = PersonOfB;
  expected[Element::Checksum] = QStringLiteral("92");
  KvkReading reading;
  EXPECT_EQ(reading.Read(SampleRecord(u"B6082")), KvkResult::Read);
  EXPECT_EQ(reading.insured, expected);
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
}

TEST(KvkTemplateTest, RecordBAs6082FailsWithTheChecksumOverEverything) {
  KvkReading reading;
  EXPECT_EQ(reading.Read(QString(SampleRecord(u"B6082").chopped(2) + u"93")), KvkResult::Refused);
  EXPECT_EQ(reading.Boxes(), std::vector{BadChecksum});
}

TEST(KvkTemplateTest, RecordCFromAMobileTerminal) {
  KvkReading reading(Kind::Mobile);
  EXPECT_EQ(reading.Read(SampleRecord(u"C")), KvkResult::Read);
  EXPECT_EQ(reading.insured, PersonOfC);
  EXPECT_TRUE(reading.Boxes().empty());
  EXPECT_EQ(reading.info.ModelName.Trimmed(), u"Serie Sigma");
  EXPECT_EQ(reading.info.ManufacturerId, u"DENRV");
  EXPECT_EQ(reading.info.ProductCode, u"PKT-S");
}

TEST(KvkTemplateTest, RecordCFromAStationaryTerminalKeepsNoSupplement) {
  KvkReading reading;
  reading.insured[Element::ReadingDate] = QStringLiteral("of before");
  EXPECT_EQ(reading.Read(SampleRecord(u"C")), KvkResult::Read);
  InsuredData expected = PersonOfB;
  expected[Element::ReadingDate] = QStringLiteral("of before");
  EXPECT_EQ(reading.insured, expected);
}

TEST(KvkTemplateTest, ARecordWithoutSupplementFromAMobileTerminal) {
  for (const QStringView record : {u"A", u"B", u"B6082"}) {
    KvkReading reading(Kind::Mobile);
    EXPECT_EQ(reading.Read(SampleRecord(record)), KvkResult::Refused);
    EXPECT_EQ(reading.Boxes(), std::vector{BadSupplement});
    EXPECT_FALSE(reading.insured.IsEmpty()) << "what was parsed before the failure stays";
  }
}

TEST(KvkTemplateTest, TheBoxOfAFailedCheck) {
  KvkReading reading;
  EXPECT_EQ(reading.Read(SampleRecord(u"B-broken")), KvkResult::Refused);
  ASSERT_EQ(reading.dialogs.boxes.size(), 1U);
  const ShownBox& box = reading.dialogs.boxes.front();
  EXPECT_EQ(box.title, u" KartoCheck ");
  EXPECT_EQ(box.text, BadChecksum);
  EXPECT_EQ(box.icon, Icon::Critical);
  EXPECT_FALSE(box.isQuestion);
  EXPECT_EQ(reading.insured[Element::LastName], u"Übermaß") << "stored before the check";
}

struct FormRow {
  const char* sentence;
  QString data;
  std::vector<QString> boxes;
  KvkResult result = boxes.empty() ? KvkResult::Read : KvkResult::Refused;

  friend std::ostream& operator<<(std::ostream& out, const FormRow& row) {
    return out << row.sentence;
  }
};

class KvkFormTest : public testing::TestWithParam<FormRow> {};

TEST_P(KvkFormTest, Result) {
  const FormRow& row = GetParam();
  KvkReading reading;
  EXPECT_EQ(reading.Read(row.data), row.result);
  EXPECT_EQ(reading.Boxes(), row.boxes);
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (ASN-1)");
}

// `text` with the character at the 1-based position and the one behind it replaced.
QString With(QString text, qsizetype position, QStringView pair) {
  return text.replace(position - 1, 2, pair.toString());
}

// A template of form 60 whose XOR over all bytes but the last is 0.
QString TemplateWithSum0(const std::vector<DataObject>& objects) {
  for (int filler = 'A'; filler < 256; ++filler) {
    QByteArray content = ObjectBytes({Filler, {0x8A, QByteArray(1, static_cast<char>(filler))}});
    content += ObjectBytes(objects);
    const QString record = TemplateAround(Form::Form60, content);
    int sum = 0;
    for (const char byte : QByteArray::fromHex(record.chopped(2).toLatin1())) sum ^= byte;
    if ((sum & 0xFF) == 0) return record;
  }
  throw std::logic_error("no filler fits");
}

INSTANTIATE_TEST_SUITE_P(
    Kvk, KvkFormTest,
    testing::ValuesIn(std::vector<FormRow>{
        {"form 60", TemplateRecord(Form::Form60, {Filler, {0x80, "Kasse"}}), {}},
        {"form 6081", TemplateRecord(Form::Form6081, {Filler, {0x80, "Kasse"}}), {}},
        {"form 6082", TemplateRecord(Form::Form6082, {Filler, {0x80, "Kasse"}}), {}},
        {"form 60 with a length byte 80 is still form 60",
         TemplateRecord(Form::Form60, {Filler, {0x80, QByteArray(0x80 - 48 - 2 - 3, 'K')}}),
         {}},
        {"form 60 with a length byte 83 is still form 60",
         TemplateRecord(Form::Form60, {Filler, {0x80, QByteArray(0x83 - 48 - 2 - 3, 'K')}}),
         {}},
        {"a full record of 219 bytes", FullTemplateRecord(), {}},
        {"the range follows the length field, not the data",
         TemplateRecord(Form::Form60, {Filler, {0x80, "Kasse"}}) + QStringLiteral("80024142"),
         {}},
        {"a length field that says less", With(SampleRecord(u"B"), 5, u"9F"), {BadChecksum}},
        {"a length field that says more", With(SampleRecord(u"B"), 5, u"A2"), {BadChecksum}},
        {"a length field that says most", With(SampleRecord(u"B"), 5, u"FF"), {BadChecksum}},
        {"a length field of two bytes that says most",
         With(SampleRecord(u"B6082"), 5, u"FF"),
         {BadChecksum}},
        {"no checksum element",
         TemplateAround(Form::Form60, ObjectBytes({Filler, {0x80, "Kasse"}})),
         {BadChecksum}},
        {"an empty checksum element counts as 00 and fails",
         TemplateAround(Form::Form60, ObjectBytes({Filler, {0x80, "Kasse"}, {0x8E, ""}})),
         {BadChecksum}},
        {"an empty checksum element counts as 00 and fits", TemplateWithSum0({{0x8E, ""}}), {}},
        {"a checksum of two bytes does not fit a byte",
         TemplateAround(Form::Form60, ObjectBytes({Filler, {0x80, "Kasse"}, {0x8E, "\x01\x01"}})),
         {BadChecksum}},
        {"a checksum of twenty bytes",
         TemplateAround(Form::Form60, ObjectBytes({Filler, {0x8E, QByteArray(20, '\x01')}})),
         {BadChecksum}},
        {"an unknown tag in front of the checksum element",
         TemplateRecord(Form::Form60, {Filler, {0xBF, "?"}}),
         {DefectiveRecord, BadChecksum}},
        {"an unknown tag behind the checksum element only warns",
         TemplateRecord(Form::Form60, {Filler, {0x80, "Kasse"}}) + QStringLiteral("BF0141"),
         {DefectiveRecord},
         KvkResult::Read},
        {"padding behind the record only warns",
         TemplateRecord(Form::Form60, {Filler, {0x80, "Kasse"}}) + QStringLiteral("0000"),
         {DefectiveRecord},
         KvkResult::Read},
    }),
    SentenceName());

TEST(KvkTemplateTest, AnEmptyChecksumElementIsStoredAs00) {
  KvkReading reading;
  EXPECT_EQ(reading.Read(TemplateWithSum0({{0x8E, ""}})), KvkResult::Read);
  EXPECT_EQ(reading.insured[Element::Checksum], u"00");
}

TEST(KvkTemplateTest, AnUnknownTagStopsTheWalkAndKeepsWhatWasFound) {
  KvkReading reading;
  EXPECT_EQ(
      reading.Read(TemplateRecord(
          Form::Form60, {{0x80, "Kasse"}, {0x87, "Muster"}, {0xBF, "?"}, {0x85, "Maxi"}, Filler})),
      KvkResult::Refused);
  EXPECT_EQ(reading.insured[Element::InsurerName], u"Kasse");
  EXPECT_EQ(reading.insured[Element::LastName], u"Muster");
  EXPECT_EQ(reading.insured[Element::FirstName], u"");
  EXPECT_EQ(reading.insured[Element::Street], u"");
  ASSERT_EQ(reading.dialogs.boxes.size(), 2U);
  const ShownBox& box = reading.dialogs.boxes.front();
  EXPECT_EQ(box.title, u" KartoCheck KVK lesen ");
  EXPECT_EQ(box.text, u"Defekter KVK Datensatz!!!");
  EXPECT_EQ(box.icon, Icon::Exclamation);
  EXPECT_FALSE(box.isQuestion);
}

struct ListRow {
  const char* sentence;
  QStringView elements;  // the list behind the template's header
  InsuredData expected;
  std::size_t boxes;

  friend std::ostream& operator<<(std::ostream& out, const ListRow& row) {
    return out << row.sentence;
  }
};

class ElementListTest : public testing::TestWithParam<ListRow> {};

TEST_P(ElementListTest, Elements) {
  const ListRow& row = GetParam();
  KvkReading reading(Kind::Mobile);
  reading.insured[Element::Town] = QStringLiteral("of before");
  ParseKvkAsn1(row.elements, reading.Target());
  EXPECT_EQ(reading.insured, row.expected);
  EXPECT_EQ(reading.Boxes(), std::vector<QString>(row.boxes, DefectiveRecord));
}

InsuredData One(Element element, QStringView text) {
  InsuredData elements;
  elements[element] = text.toString();
  return elements;
}

const QString AllButOne = QStringLiteral("800141").repeated(ElementCount - 1);
const QString FullList = AllButOne + QStringLiteral("800142BF0143");
const QString ListWithUnknownLast = AllButOne + QStringLiteral("BF0143");

INSTANTIATE_TEST_SUITE_P(
    Kvk, ElementListTest,
    testing::ValuesIn(std::vector<ListRow>{
        {"an empty list empties the slot", u"", InsuredData{}, 0},
        {"tag 80", u"800141", One(Element::InsurerName, u"A"), 0},
        {"tag 81", u"810141", One(Element::InsurerNumber, u"A"), 0},
        {"tag 82", u"820141", One(Element::InsuredNumber, u"A"), 0},
        {"tag 8F", u"8F0141", One(Element::Vknr, u"A"), 0},
        {"tag 83", u"830141", One(Element::InsuredStatus, u"A"), 0},
        {"tag 90", u"900141", One(Element::StatusSupplement, u"A"), 0},
        {"tag 84", u"840141", One(Element::Title, u"A"), 0},
        {"tag 85", u"850141", One(Element::FirstName, u"A"), 0},
        {"tag 86", u"860141", One(Element::NameAffix, u"A"), 0},
        {"tag 87", u"870141", One(Element::LastName, u"A"), 0},
        {"tag 88", u"880141", One(Element::BirthDate, u"A"), 0},
        {"tag 89", u"890141", One(Element::Street, u"A"), 0},
        {"tag 8A", u"8A0141", One(Element::CountryCode, u"A"), 0},
        {"tag 8B", u"8B0141", One(Element::PostalCode, u"A"), 0},
        {"tag 8C", u"8C0141", One(Element::Town, u"A"), 0},
        {"tag 8D", u"8D0141", One(Element::ValidUntil, u"A"), 0},
        {"tag 8E is kept as digits", u"8E0141", One(Element::Checksum, u"41"), 0},
        {"tag 91", u"910141", One(Element::ReadingDate, u"A"), 0},
        {"tag 92", u"920141", One(Element::ApprovalNumber, u"A"), 0},
        {"tag 93 is kept as digits", u"930141", One(Element::ChecksumSupplement, u"41"), 0},
        {"an empty text", u"8000", InsuredData{}, 0},
        {"an empty tag 8E", u"8E00", One(Element::Checksum, u"00"), 0},
        {"an empty tag 93", u"9300", One(Element::ChecksumSupplement, u"00"), 0},
        {"the last of two elements of one tag counts", u"80014180024243",
         One(Element::InsurerName, u"BC"), 0},
        {"blanks of a text stay", u"8003204120", One(Element::InsurerName, u" A "), 0},
        {"a value cut at the end of the list", u"80054142", One(Element::InsurerName, u"AB"), 0},
        {"a length past everything", u"80FF41", One(Element::InsurerName, u"A"), 0},
        {"a tag without length at the end is an empty element", u"81014180",
         One(Element::InsurerNumber, u"A"), 0},
        {"tag 8E without its value is an empty one", u"8E01", One(Element::Checksum, u"00"), 0},
        {"tag 7F is unknown", u"8001417F0141810142", One(Element::InsurerName, u"A"), 1},
        {"tag BF is unknown", u"800141BF0141810142", One(Element::InsurerName, u"A"), 1},
        {"tag 00 is unknown", u"8001410000", One(Element::InsurerName, u"A"), 1},
        {"as many elements as there are are read, the next is not looked at", FullList,
         One(Element::InsurerName, u"B"), 0},
        {"the last of them is looked at", ListWithUnknownLast, One(Element::InsurerName, u"A"), 1},
    }),
    SentenceName());

TEST(KvkTemplateTest, TheModelIsCorrectedFromAnApprovalNumberOfThreeBytes) {
  KvkReading reading(Kind::Mobile);
  reading.pn = 8192;
  ParseKvkAsn1(u"9203313033", reading.Target());
  EXPECT_EQ(reading.info.ModelName.Trimmed(), u"Serie Delta");
  EXPECT_EQ(reading.info.ManufacturerId, u"DENRV");
  EXPECT_EQ(reading.info.ProductCode, u"PKTD ");
}

TEST(KvkTemplateTest, TheModelStaysWithAnApprovalNumberOfAnotherLength) {
  for (const QStringView list : {u"92023130", u"920431303320", u"9200",
                                 u"80033130"
                                 "33"}) {
    KvkReading reading(Kind::Mobile);
    reading.info.ModelName = u"before";
    ParseKvkAsn1(list, reading.Target());
    EXPECT_EQ(reading.info.ModelName.Trimmed(), u"before") << list.toString().toStdString();
  }
}

struct SupplementRow {
  const char* sentence;
  QString supplement;          // behind record B
  std::vector<QString> boxes;  // none: the read succeeds

  friend std::ostream& operator<<(std::ostream& out, const SupplementRow& row) {
    return out << row.sentence;
  }
};

class SupplementTest : public testing::TestWithParam<SupplementRow> {};

TEST_P(SupplementTest, Result) {
  const SupplementRow& row = GetParam();
  KvkReading reading(Kind::Mobile);
  EXPECT_EQ(reading.Read(QString(SampleRecord(u"B") + row.supplement)),
            row.boxes.empty() ? KvkResult::Read : KvkResult::Refused);
  EXPECT_EQ(reading.Boxes(), row.boxes);
}

// A supplement of `bytes` bytes in all.
QString SupplementOf(int bytes) {
  return Supplement({{0x91, "05032024"}, {0x92, QByteArray(bytes - 15, '7')}});
}

INSTANTIATE_TEST_SUITE_P(
    Kvk, SupplementTest,
    testing::ValuesIn(std::vector<SupplementRow>{
        {"18 bytes, with reading date and short approval number", SupplementOf(18), {}},
        {"42 bytes, with the long approval number", SupplementOf(42), {}},
        {"53 bytes, the longest", SupplementOf(53), {}},
        {"54 bytes", SupplementOf(54), {UnknownSupplement}},
        {"the checksum element alone", QStringLiteral("930192"), {}},
        {"the checksum element alone with another sum", QStringLiteral("930193"), {BadSupplement}},
        {"an empty checksum element counts as 00", QStringLiteral("9300"), {BadSupplement}},
        {"no checksum element", QStringLiteral("91083035303332303234"), {BadSupplement}},
        {"no checksum element in a supplement that is too long",
         QStringLiteral("9134") + QStringLiteral("30").repeated(52),
         {BadSupplement}},
        {"a wrong checksum", SupplementOf(18).chopped(2) + QStringLiteral("00"), {BadSupplement}},
        {"a checksum of two bytes",
         QStringLiteral("9302") + QStringLiteral("0191"),
         {BadSupplement}},
        {"an unknown tag in front of the checksum element",
         QStringLiteral("91083035303332303234") + QStringLiteral("BF0141") +
             QStringLiteral("930100"),
         {DefectiveRecord, BadSupplement}},
    }),
    SentenceName());

TEST(SupplementTest, TheRecordsOwnChecksumIsCheckedFirst) {
  KvkReading reading(Kind::Mobile);
  EXPECT_EQ(reading.Read(QString(SampleRecord(u"B-broken") + SupplementOf(54))),
            KvkResult::Refused);
  EXPECT_EQ(reading.Boxes(), std::vector{BadChecksum});
}

TEST(SupplementTest, TheLengthIsCountedFromTheHeaderOfEachForm) {
  for (const Form form : {Form::Form60, Form::Form6081, Form::Form6082}) {
    KvkReading reading(Kind::Mobile);
    const QString record = TemplateRecord(form, {Filler, {0x80, "Kasse"}});
    EXPECT_EQ(reading.Read(QString(record + SupplementOf(53))), KvkResult::Read);
    EXPECT_EQ(reading.Read(QString(record + SupplementOf(54))), KvkResult::Refused);
    EXPECT_EQ(reading.Boxes(), std::vector{UnknownSupplement});
  }
}

}  // namespace
}  // namespace kartocheck::test
