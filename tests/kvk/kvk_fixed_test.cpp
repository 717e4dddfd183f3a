#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "kvk/kvk_reading.h"
#include "support/kvk_records.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

const InsuredData Person =
    ElementTexts({u"BKK Muster", u"7654321", u"987654321012", u"17999", u"1000", u"9", u"Dr.",
                  u"Jörg-Peter", u"von", u"Übermaß", u"31121969", u"Hinter den Höfen 12 a", u"D",
                  u"01067", u"Dresden-Löbtau", u"1228", u"5A"});

InsuredData PersonWith(QStringView date, QStringView approvalNumber, QStringView checksum) {
  InsuredData elements = Person;
  elements[Element::ReadingDate] = date.toString();
  elements[Element::ApprovalNumber] = approvalNumber.toString();
  elements[Element::ChecksumSupplement] = checksum.toString();
  return elements;
}

// 219 bytes; with a supplement 231, with the long approval number 255.
QString Fixed219() {
  return HexOf(FixedRecordFields());
}
QString Fixed231(const char* approvalNumber) {
  return HexOf(FixedRecordFields() + "05032024" + approvalNumber + "\x20");
}
QString Fixed255(const char* approvalNumber) {
  return HexOf(FixedRecordFields() + "05032024" +
               QByteArray(approvalNumber).leftJustified(27, ' ') + "\xA0");
}

struct FixedRow {
  const char* sentence;
  Kind kind;
  QString data;
  InsuredData expected;
  QStringView model;

  friend std::ostream& operator<<(std::ostream& out, const FixedRow& row) {
    return out << row.sentence;
  }
};

class KvkFixedTest : public testing::TestWithParam<FixedRow> {};

TEST_P(KvkFixedTest, Elements) {
  const FixedRow& row = GetParam();
  KvkReading reading(row.kind);
  reading.info.ModelName = u"before";
  reading.info.ProductCode = u"PKTD ";
  EXPECT_EQ(reading.Read(row.data), KvkResult::Read);
  EXPECT_EQ(reading.insured, row.expected);
  EXPECT_EQ(reading.info.ModelName.Trimmed(), row.model);
  EXPECT_EQ(reading.info.ProductCode, u"PKTD ");
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (Festformat)");
  EXPECT_TRUE(reading.Boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Kvk, KvkFixedTest,
    testing::ValuesIn(std::vector<FixedRow>{
        {"219 bytes from a card", Kind::Stationary, Fixed219(), Person, u"before"},
        {"231 bytes from a card: no supplement, no model correction", Kind::Stationary,
         Fixed231("109"), Person, u"before"},
        {"255 bytes from a card: no supplement", Kind::Stationary, Fixed255("109"), Person,
         u"before"},
        {"219 bytes from a mobile terminal: an empty supplement", Kind::Mobile, Fixed219(), Person,
         u"before"},
        {"231 bytes from a mobile terminal: supplement and model correction", Kind::Mobile,
         Fixed231("109"), PersonWith(u"05032024", u"109", u"20"), u"Serie Sigma"},
        {"231 bytes with approval number 103", Kind::Mobile, Fixed231("103"),
         PersonWith(u"05032024", u"103", u"20"), u"Serie Delta"},
        {"231 bytes with another approval number", Kind::Mobile, Fixed231("555"),
         PersonWith(u"05032024", u"555", u"20"), u"Kein Vedra F/Serie Sigma"},
        {"231 bytes with a blank approval number", Kind::Mobile, Fixed231("   "),
         PersonWith(u"05032024", u"", u"20"), u"Kein Vedra F/Serie Sigma"},
        {"255 bytes from a mobile terminal: 27 bytes of approval number, no correction",
         Kind::Mobile, Fixed255("Hersteller;Produkt;1.00"),
         PersonWith(u"05032024", u"Hersteller;Produkt;1.00", u"A0"), u"before"},
        {"255 bytes with approval number 109: no correction", Kind::Mobile, Fixed255("109"),
         PersonWith(u"05032024", u"109", u"A0"), u"before"},
    }),
    SentenceName());

// One field of a record whose other bytes are all '.'.
QString FieldAt(int offset, const QByteArray& field) {
  return HexOf(QByteArray(219, '.').replace(offset, field.size(), field));
}

struct BlankRow {
  const char* sentence;
  QString data;
  Element element;
  QStringView expected;

  friend std::ostream& operator<<(std::ostream& out, const BlankRow& row) {
    return out << row.sentence;
  }
};

class FixedFieldTest : public testing::TestWithParam<BlankRow> {};

TEST_P(FixedFieldTest, Text) {
  const BlankRow& row = GetParam();
  KvkReading reading;
  EXPECT_EQ(reading.Read(row.data), KvkResult::Read);
  EXPECT_EQ(reading.insured[row.element], row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Kvk, FixedFieldTest,
    testing::ValuesIn(std::vector<BlankRow>{
        {"leading and trailing blanks of a text field go",
         FieldAt(0, "    Kasse am Ort            "), Element::InsurerName, u"Kasse am Ort"},
        {"leading and trailing blanks of a digit field go", FieldAt(28, "  543  "),
         Element::InsurerNumber, u"543"},
        {"a blank text field is empty", FieldAt(0, QByteArray(28, ' ')), Element::InsurerName, u""},
        {"a blank digit field is empty", FieldAt(28, QByteArray(7, ' ')), Element::InsurerNumber,
         u""},
        {"a full field has no blanks", FieldAt(28, "1234567"), Element::InsurerNumber, u"1234567"},
        {"only blanks are trimmed", FieldAt(28, QByteArray("\0 1 2 \0", 7)), Element::InsurerNumber,
         QStringView(u"\0 1 2 \0", 7)},
        {"a checksum of 20 is no blank", FieldAt(218, " "), Element::Checksum, u"20"},
        {"a checksum of 00", FieldAt(218, QByteArray(1, '\0')), Element::Checksum, u"00"},
        {"German characters", FieldAt(28, "[\\]{|}~"), Element::InsurerNumber, u"ÄÖÜäöüß"},
    }),
    SentenceName());

class OtherLengthTest : public testing::TestWithParam<std::pair<Kind, int>> {};

TEST_P(OtherLengthTest, IsAcceptedAndNothingIsStored) {
  const auto [kind, length] = GetParam();
  KvkReading reading(kind);
  reading.insured[Element::Town] = QStringLiteral("of before");
  reading.info.ModelName = u"before";
  EXPECT_EQ(reading.Read(QString(length, u'3')), KvkResult::Read);
  InsuredData expected;
  expected[Element::Town] = QStringLiteral("of before");
  EXPECT_EQ(reading.insured, expected);
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), u"PC (Festformat)");
  EXPECT_EQ(reading.info.ModelName.Trimmed(), u"before");
  EXPECT_TRUE(reading.Boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Kvk, OtherLengthTest,
                         testing::Values(std::pair{Kind::Stationary, 106},
                                         std::pair{Kind::Stationary, 300},
                                         std::pair{Kind::Stationary, 436},
                                         std::pair{Kind::Mobile, 300}, std::pair{Kind::Mobile, 440},
                                         std::pair{Kind::Mobile, 460}, std::pair{Kind::Mobile, 464},
                                         std::pair{Kind::Mobile, 508}, std::pair{Kind::Mobile, 512},
                                         std::pair{Kind::Mobile, 518}));

struct LengthRow {
  Kind kind;
  int length;
  bool accepted;

  friend std::ostream& operator<<(std::ostream& out, const LengthRow& row) {
    return out << row.length << " characters from a "
               << (row.kind == Kind::Mobile ? "mobile" : "stationary") << " terminal are "
               << (row.accepted ? "accepted" : "refused");
  }
};

class KvkLengthTest : public testing::TestWithParam<LengthRow> {};

TEST_P(KvkLengthTest, Check) {
  const LengthRow& row = GetParam();
  KvkReading reading(row.kind);
  reading.info.DisplayText = u"before";
  EXPECT_EQ(reading.Read(QString(row.length, u'3')),
            row.accepted ? KvkResult::Read : KvkResult::Refused);
  EXPECT_EQ(reading.Boxes(), row.accepted ? std::vector<QString>{} : std::vector{NoKvk});
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), row.accepted ? u"PC (Festformat)" : u"before");
}

INSTANTIATE_TEST_SUITE_P(Kvk, KvkLengthTest,
                         testing::ValuesIn(std::vector<LengthRow>{
                             {Kind::Stationary, 0, false},   {Kind::Stationary, 104, false},
                             {Kind::Stationary, 105, false}, {Kind::Stationary, 106, true},
                             {Kind::Stationary, 107, true},  {Kind::Stationary, 108, true},
                             {Kind::Stationary, 437, true},  {Kind::Stationary, 438, true},
                             {Kind::Stationary, 439, false}, {Kind::Stationary, 440, false},
                             {Kind::Stationary, 461, false}, {Kind::Stationary, 462, true},
                             {Kind::Stationary, 463, false}, {Kind::Stationary, 464, false},
                             {Kind::Stationary, 509, false}, {Kind::Stationary, 510, true},
                             {Kind::Stationary, 511, false}, {Kind::Stationary, 512, false},
                             {Kind::Stationary, 518, false}, {Kind::Stationary, 520, false},
                             {Kind::Mobile, 0, false},       {Kind::Mobile, 104, false},
                             {Kind::Mobile, 105, false},     {Kind::Mobile, 106, true},
                             {Kind::Mobile, 438, true},      {Kind::Mobile, 440, true},
                             {Kind::Mobile, 462, true},      {Kind::Mobile, 510, true},
                             {Kind::Mobile, 512, true},      {Kind::Mobile, 518, true},
                             {Kind::Mobile, 519, false},     {Kind::Mobile, 520, false},
                             {Kind::Mobile, 8192, false},
                         }),
                         SentenceName());

}  // namespace
}  // namespace kartocheck::test
