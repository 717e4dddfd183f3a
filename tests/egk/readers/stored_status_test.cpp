#include "egk/stored_status.h"

#include <gtest/gtest.h>

#include "egk/readers/egk_reading.h"
#include "egk/readers/sample_documents.h"
#include "egk/readers/script_parts.h"
#include "support/fake_api.h"
#include "support/kvk_records.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

// Messages.
const QString BadChecksum =
    QStringLiteral("Die Prüfsumme der gelesenen eGK VSD Zusatzdaten ist korrupt!!! ");
const QString BadDate = QStringLiteral("Unbekanntes Format des Einlesedatums festgestellt!");
const QString BadApproval = QStringLiteral("Unbekanntes Format der Zulassungsnummer festgestellt!");
const QString NoApproval = QStringLiteral("Die Zulassungsnummer konnte nicht ermittelt werden!");
const QString LongStatus = QStringLiteral(
    "Größere Länge der VSD Statusdaten festgestellt!\r\nEs werden nicht alle Daten angezeigt!");
const QString LongDate = QStringLiteral(
    "Größere Länge des Einlesedatums festgestellt!\r\nEs werden nicht alle Daten angezeigt!");
const QString LongApproval = QStringLiteral(
    "Größere Länge der Zulassungsnummer festgestellt!\r\nEs werden nicht alle Daten angezeigt!");

constexpr int StatusTag = 0xA0;
constexpr int DateTag = 0x91;
constexpr int ApprovalTag = 0x92;

const QByteArray Date = QByteArrayLiteral("05032024");
const QByteArray Approval = QByteArrayLiteral("DENRV;DEMOTERM;1.2.3:4.5.6 ");

// The bytes closed by a checksum that fits.
QByteArray WithChecksum(QByteArray bytes) {
  bytes.append('\x93').append('\x01');
  char sum = 0;
  for (const char byte : bytes) sum = static_cast<char>(sum ^ byte);
  return bytes.append(sum);
}

QByteArray Record(const QByteArray& status, const QByteArray& date, const QByteArray& approval) {
  return WithChecksum(ObjectBytes({{StatusTag, status}, {DateTag, date}, {ApprovalTag, approval}}));
}

enum class Terminal { Plain, Extended };

// The record as the reader takes it apart.
struct StatusReading {
  explicit StatusReading(const QByteArray& record, Terminal terminal = Terminal::Plain)
      : reading(api) {
    reading.info.Reset9501 = terminal == Terminal::Extended;
    ReadStoredStatus(HexOf(record), reading.Target());
  }

  [[nodiscard]] const StatusDescriptor& Stored() const { return reading.egk.stored; }
  [[nodiscard]] std::vector<QString> Boxes() const { return reading.Boxes(); }

  FakeApi api;
  EgkReading reading;
};

std::vector<QString> TextsOf(const StatusDescriptor& stored) {
  return {stored.status.tlv,     stored.statusText,    stored.readingDate.tlv,
          stored.storedDate,     stored.convertedDate, stored.approval.tlv,
          stored.approvalNumber, stored.checksum.tlv,  stored.checksumText};
}

TEST(StoredStatusTest, PlainRecord) {
  const StatusReading status(PlainStatusRecord());
  EXPECT_EQ(TextsOf(status.Stored()),
            Texts({u"A01930323032353034303731303130353800500200000030000004",
                   u"30323032353034303731303130353800500200000030000004", u"91083035303332303234",
                   u"05032024", u"05.03.2024",
                   u"921B44454E52563B44454D4F5445524D3B312E322E333A342E352E3620",
                   u"DENRV;DEMOTERM;1.2.3:4.5.6", u"93013F", u"3F"}));
  EXPECT_EQ(status.Boxes(), Texts({}));
}

TEST(StoredStatusTest, ExtendedRecord) {
  const StatusReading status(ExtendedStatusRecord(), Terminal::Extended);
  EXPECT_EQ(TextsOf(status.Stored()),
            Texts({u"A01930323032353034303731303130353800500200000030000004",
                   u"30323032353034303731303130353800500200000030000004", u"91083035303332303234",
                   u"05032024", u"05.03.2024",
                   u"922644454E52563B44454D4F5445524D3B3030312E3030322E3030333A3030342E3030352E30"
                   u"3036",
                   u"DENRV;DEMOTERM;001.002.003:004.005.006", u"930122", u"22"}));
  EXPECT_EQ(status.Boxes(), Texts({}));
}

// The tags and lengths to expect.
TEST(StoredStatusTest, Descriptor) {
  const StatusDescriptor stored;
  EXPECT_EQ(stored.status.tag + stored.status.length, u"A019");
  EXPECT_EQ(stored.readingDate.tag + stored.readingDate.length, u"9108");
  EXPECT_EQ(stored.approval.tag + stored.approval.length, u"921B");
  EXPECT_EQ(stored.checksum.tag + stored.checksum.length, u"9301");
  EXPECT_TRUE(stored.IsEmpty());
}

TEST(StoredStatusTest, AWrongChecksumIsToldAndEverythingIsTakenOver) {
  const std::vector<QString> intact = TextsOf(StatusReading(PlainStatusRecord()).Stored());
  for (int bit = 0; bit < 8; ++bit) {
    QByteArray record = PlainStatusRecord();
    record.back() = static_cast<char>(record.back() ^ 1 << bit);
    const StatusReading status(record);
    EXPECT_EQ(status.Boxes(), Texts({BadChecksum}));
    status.reading.ExpectInformationBoxes({BadChecksum});
    std::vector<QString> texts = TextsOf(status.Stored());
    std::vector<QString> expected = intact;
    expected[7] = u"9301" + HexOf(record.right(1));
    expected[8] = HexOf(record.right(1));
    EXPECT_EQ(texts, expected);
  }
}

// Every byte before the checksum's value counts, tags and lengths too.
TEST(StoredStatusTest, EveryByteTakesPartInTheChecksum) {
  const QByteArray intact = PlainStatusRecord();
  for (qsizetype i = 0; i < intact.size() - 3; ++i) {
    QByteArray record = intact;
    record[i] = static_cast<char>(record[i] ^ 0x01);
    const StatusReading status(record);
    ASSERT_FALSE(status.Boxes().empty()) << "byte " << i;
    EXPECT_EQ(status.Boxes().front(), BadChecksum) << "byte " << i;
  }
}

TEST(StoredStatusTest, WithoutChecksumObject) {
  const StatusReading status(PlainStatusRecord().chopped(3));
  EXPECT_EQ(status.Boxes(), Texts({BadChecksum}));
  EXPECT_EQ(status.Stored().convertedDate, u"05.03.2024");
  EXPECT_EQ(status.Stored().checksumText, u"");
}

TEST(StoredStatusTest, AnEmptyChecksumObjectFitsNothing) {
  const StatusReading status(PlainStatusRecord().chopped(3) + QByteArray::fromHex("9300"));
  EXPECT_EQ(status.Boxes(), Texts({BadChecksum}));
}

// 25 bytes that begin with no tag A0 are the status itself, as the card holds it.
TEST(StoredStatusTest, RawStatusBytes) {
  const QByteArray objects = ObjectBytes({{DateTag, Date}, {ApprovalTag, Approval}});
  const StatusReading status(WithChecksum(StatusVd() + objects));
  EXPECT_EQ(status.Boxes(), Texts({}));
  EXPECT_EQ(status.Stored().statusText, StatusVdText);
  EXPECT_EQ(status.Stored().status.tlv, StatusVdText);
  EXPECT_EQ(status.Stored().convertedDate, u"05.03.2024");
  EXPECT_EQ(status.Stored().approvalNumber, u"DENRV;DEMOTERM;1.2.3:4.5.6");
}

// A record without date and approval number is no damaged one; the reader notes it once.
TEST(StoredStatusTest, RawStatusBytesAlone) {
  for (const QByteArray& tail : {QByteArray(), QByteArray(231, '\0'), QByteArray(231, '\xFF')}) {
    const StatusReading status(StatusVd() + tail);
    EXPECT_TRUE(LacksDateAndApproval(HexOf(StatusVd() + tail)));
    EXPECT_EQ(status.Stored().statusText, StatusVdText);
    EXPECT_EQ(status.Boxes(), Texts({}));
  }
}

TEST(StoredStatusTest, TheStatusObjectAlone) {
  const QByteArray record = ObjectBytes({{StatusTag, StatusVd()}});
  EXPECT_TRUE(LacksDateAndApproval(HexOf(record)));
  const StatusReading status(record);
  EXPECT_EQ(status.Stored().statusText, StatusVdText);
  EXPECT_EQ(status.Boxes(), Texts({}));
}

TEST(StoredStatusTest, WithoutDateAndApprovalAChecksumIsCheckedAllTheSame) {
  QByteArray record = WithChecksum(ObjectBytes({{StatusTag, StatusVd()}}));
  EXPECT_TRUE(LacksDateAndApproval(HexOf(record)));
  EXPECT_EQ(StatusReading(record).Boxes(), Texts({}));
  record.back() = static_cast<char>(record.back() ^ 1);
  EXPECT_EQ(StatusReading(record).Boxes(), Texts({BadChecksum}));
}

TEST(StoredStatusTest, OneOfThemAloneIsAsDescribed) {
  const QByteArray onlyDate = WithChecksum(ObjectBytes({{DateTag, Date}}));
  const QByteArray onlyApproval = WithChecksum(ObjectBytes({{ApprovalTag, Approval}}));
  EXPECT_FALSE(LacksDateAndApproval(HexOf(StatusVd() + onlyDate)));
  EXPECT_FALSE(LacksDateAndApproval(HexOf(StatusVd() + onlyApproval)));
  EXPECT_EQ(StatusReading(Record(StatusVd(), Date, {})).Boxes(), Texts({BadApproval}));
  EXPECT_EQ(StatusReading(Record(StatusVd(), {}, Approval)).Boxes(), Texts({BadDate}));
  EXPECT_EQ(StatusReading(Record(StatusVd(), {}, {})).Boxes(), Texts({BadDate, BadApproval}));
}

// What cannot be told apart may be a damaged date: that is told as a fault.
TEST(StoredStatusTest, AnUnknownRestIsNoMissingDate) {
  for (const char* const rest : {"5A", "94023131", "0000005A", "FF00", "91", "9108", "91083131"}) {
    const QByteArray record = ObjectBytes({{StatusTag, StatusVd()}}) + QByteArray::fromHex(rest);
    EXPECT_FALSE(LacksDateAndApproval(HexOf(record))) << rest;
    EXPECT_EQ(StatusReading(record).Boxes(), Texts({BadChecksum, BadDate, BadApproval})) << rest;
  }
}

TEST(StoredStatusTest, FewerRawStatusBytes) {
  const StatusReading status(StatusVd().first(10));
  EXPECT_EQ(status.Stored().statusText, StatusVdText.first(20));
  EXPECT_EQ(status.Boxes(), Texts({}));
}

TEST(StoredStatusTest, NoBytes) {
  const StatusReading status(QByteArray{});
  EXPECT_TRUE(LacksDateAndApproval(u""));
  EXPECT_TRUE(status.Stored().IsEmpty());
  EXPECT_EQ(status.Boxes(), Texts({}));
}

TEST(StoredStatusTest, WhatFollowsTheObjectsIsIgnored) {
  const std::vector<QString> intact = TextsOf(StatusReading(PlainStatusRecord()).Stored());
  for (const QByteArray& tail :
       {QByteArray(1, '\0'), QByteArray(1, '\xFF'), QByteArray(187, '\0'), QByteArray(187, '\xFF'),
        QByteArray::fromHex("A5084142434445464748"), QByteArray::fromHex("91"),
        QByteArray::fromHex("9108"), QByteArray::fromHex("91083131")}) {
    const StatusReading status(PlainStatusRecord() + tail);
    EXPECT_EQ(TextsOf(status.Stored()), intact);
    EXPECT_EQ(status.Boxes(), Texts({}));
  }
}

TEST(StoredStatusTest, ObjectsInAnotherOrder) {
  const QByteArray record = WithChecksum(
      ObjectBytes({{StatusTag, StatusVd()}, {ApprovalTag, Approval}, {DateTag, Date}}));
  const StatusReading status(record);
  EXPECT_EQ(status.Boxes(), Texts({}));
  EXPECT_EQ(status.Stored().convertedDate, u"05.03.2024");
  EXPECT_EQ(status.Stored().approvalNumber, u"DENRV;DEMOTERM;1.2.3:4.5.6");
}

// The walk ends there; what was found is kept, and what follows is not looked for.
TEST(StoredStatusTest, AnUnknownTagEndsTheWalk) {
  const QByteArray record = WithChecksum(ObjectBytes(
      {{StatusTag, StatusVd()}, {DateTag, Date}, {0x94, "unknown"}, {ApprovalTag, Approval}}));
  const StatusReading status(record);
  EXPECT_EQ(status.Boxes(), Texts({BadChecksum, BadApproval}));
  EXPECT_EQ(status.Stored().statusText, StatusVdText);
  EXPECT_EQ(status.Stored().convertedDate, u"05.03.2024");
  EXPECT_EQ(status.Stored().approval.tlv, u"");
}

TEST(StoredStatusTest, ALengthPastTheEndEndsTheWalk) {
  QByteArray record = PlainStatusRecord();
  record[28] = '\xFF';  // of the reading date
  const StatusReading status(record);
  EXPECT_FALSE(LacksDateAndApproval(HexOf(record)));
  EXPECT_EQ(status.Boxes(), Texts({BadChecksum, BadDate, BadApproval}));
  EXPECT_EQ(status.Stored().statusText, StatusVdText);
  EXPECT_EQ(status.Stored().readingDate.tlv, u"");
}

// A record cut anywhere keeps the objects that are whole.
TEST(StoredStatusTest, CutAnywhere) {
  const QByteArray whole = PlainStatusRecord();
  const std::vector<QString> intact = TextsOf(StatusReading(whole).Stored());
  for (qsizetype size = 1; size < whole.size(); ++size) {
    const StatusReading status(whole.first(size));
    const bool hasStatus = size >= 27;
    const bool hasDate = size >= 37;
    const bool hasApproval = size >= 66;
    EXPECT_EQ(status.Stored().statusText, hasStatus ? intact[1] : QString()) << size;
    EXPECT_EQ(status.Stored().convertedDate, hasDate ? intact[4] : QString()) << size;
    EXPECT_EQ(status.Stored().approvalNumber, hasApproval ? intact[6] : QString()) << size;
    EXPECT_EQ(status.Stored().checksumText, u"") << size;
    std::vector<QString> boxes{BadChecksum};
    if (!hasDate) boxes.push_back(BadDate);
    if (!hasApproval) boxes.push_back(BadApproval);
    if (size == 27) boxes.clear();  // a whole object and nothing behind it
    EXPECT_EQ(status.Boxes(), boxes) << size;
  }
}

struct DateRow {
  const char* sentence;
  const char* date;
  const char16_t* stored;
  const char16_t* converted;  // empty: of unknown form

  friend std::ostream& operator<<(std::ostream& out, const DateRow& row) {
    return out << row.sentence;
  }
};

class ReadingDateTest : public testing::TestWithParam<DateRow> {};

TEST_P(ReadingDateTest, ConvertedOrUnknown) {
  const DateRow& row = GetParam();
  const StatusReading status(Record(StatusVd(), row.date, Approval));
  EXPECT_EQ(status.Stored().storedDate, row.stored);
  EXPECT_EQ(status.Stored().convertedDate, row.converted);
  const bool isUnknown = *row.converted == u'\0';
  std::vector<QString> boxes;
  if (isUnknown) boxes.push_back(BadDate);
  if (std::string_view(row.date).size() > 8) boxes.push_back(LongDate);
  EXPECT_EQ(status.Boxes(), boxes);
}

INSTANTIATE_TEST_SUITE_P(
    Stored, ReadingDateTest,
    testing::Values(
        DateRow{"the year last", "15032011", u"15032011", u"15.03.2011"},
        DateRow{"the year first", "20110315", u"20110315", u"15.03.2011"},
        DateRow{"month 12, the year first", "20111231", u"20111231", u"31.12.2011"},
        DateRow{"13 where the month would be", "31121301", u"31121301", u"31.12.1301"},
        DateRow{"month 0", "20110015", u"20110015", u"15.00.2011"},
        DateRow{"only the month is digits", "AAAA12BB", u"AAAA12BB", u"BB.12.AAAA"},
        DateRow{"only the year begins with digits", "AAAA13BB", u"AAAA13BB", u"AA.AA.13BB"},
        DateRow{"no date", "", u"", u""}, DateRow{"seven characters", "2011031", u"2011031", u""},
        DateRow{"nine characters", "201103151", u"20110315", u"15.03.2011"},
        DateRow{"nine characters, the year last", "150320119", u"15032011", u"15.03.2011"},
        DateRow{"blanks behind a date", "20110315  ", u"20110315", u"15.03.2011"},
        DateRow{"nine characters, no date in the first eight", "2011A3151", u"2011A315", u""},
        DateRow{"points between", "15.03.2011", u"15.03.20", u""},
        DateRow{"a letter, then a digit", "2011A315", u"2011A315", u""},
        DateRow{"a digit, then a letter", "20110A15", u"20110A15", u""},
        DateRow{"a plus sign", "2011+315", u"2011+315", u""},
        DateRow{"a minus sign", "2011-315", u"2011-315", u""},
        DateRow{"a blank before a digit", "2011 315", u"2011 315", u""},
        DateRow{"two blanks", "2011  15", u"2011  15", u""},
        DateRow{"a blank behind a digit", "20113 15", u"20113 15", u""}),
    SentenceName());

struct ApprovalRow {
  const char* sentence;
  QByteArray value;
  QString kept;
  std::vector<QString> boxes;

  friend std::ostream& operator<<(std::ostream& out, const ApprovalRow& row) {
    return out << row.sentence;
  }
};

class ApprovalNumberTest : public testing::TestWithParam<ApprovalRow> {};

TEST_P(ApprovalNumberTest, KeptAndTold) {
  const ApprovalRow& row = GetParam();
  const StatusReading status(Record(StatusVd(), Date, row.value));
  EXPECT_EQ(status.Stored().approvalNumber, row.kept);
  EXPECT_EQ(status.Boxes(), row.boxes);
}

INSTANTIATE_TEST_SUITE_P(
    Stored, ApprovalNumberTest,
    testing::Values(
        ApprovalRow{
            "three pieces", "DENRV;DEMOTERM;1.2.3", QStringLiteral("DENRV;DEMOTERM;1.2.3"), {}},
        ApprovalRow{"blanks around it",
                    "  DENRV;DEMOTERM;1.2.3  ",
                    QStringLiteral("DENRV;DEMOTERM;1.2.3"),
                    {}},
        ApprovalRow{"one piece", "DENRV", QStringLiteral("DENRV"), {}},
        ApprovalRow{"only the maker", "DENRV;;", QStringLiteral("DENRV;;"), {}},
        ApprovalRow{"27 characters", QByteArray(27, 'Z'), QString(27, u'Z'), {}},
        ApprovalRow{"28 characters", QByteArray(28, 'Z'), QString(27, u'Z'), {LongApproval}},
        ApprovalRow{"of the code page", "DENRV;\xC4\xA4;1", QStringLiteral("DENRV;Ä€;1"), {}},
        ApprovalRow{"nothing", "", {}, {BadApproval}},
        ApprovalRow{"blanks", "     ", {}, {BadApproval}},
        ApprovalRow{"no maker", ";DEMOTERM;1.2.3", QStringLiteral(";DEMOTERM;1.2.3"), {NoApproval}},
        ApprovalRow{"a blank maker", "  ;DEMOTERM;1", QStringLiteral(";DEMOTERM;1"), {NoApproval}},
        ApprovalRow{"only separators", ";;", QStringLiteral(";;"), {NoApproval}},
        ApprovalRow{"nothing but blanks in what is kept",
                    QByteArray(27, ' ') + "DENRV",
                    {},
                    {BadApproval, LongApproval}}),
    SentenceName());

struct LengthRow {
  Terminal terminal;
  int status;  // bytes of the values
  int approval;
  std::vector<QString> boxes;

  friend std::ostream& operator<<(std::ostream& out, const LengthRow& row) {
    return out << (row.terminal == Terminal::Plain ? "plain" : "extended") << ", status "
               << row.status << ", approval number " << row.approval;
  }
};

class StoredLengthTest : public testing::TestWithParam<LengthRow> {};

// The status counts with tag and length, the approval number without.
TEST_P(StoredLengthTest, ToldWhenTooLong) {
  const LengthRow& row = GetParam();
  const QByteArray statusBytes = StatusVd().leftJustified(row.status, '\x11', true);
  const StatusReading status(Record(statusBytes, Date, QByteArray(row.approval, 'Z')),
                             row.terminal);
  EXPECT_EQ(status.Boxes(), row.boxes);
  EXPECT_EQ(status.Stored().statusText, HexOf(statusBytes.left(25)));
  EXPECT_EQ(status.Stored().approvalNumber.size(),
            std::min(row.approval, row.terminal == Terminal::Plain ? 27 : 38));
}

INSTANTIATE_TEST_SUITE_P(
    Stored, StoredLengthTest,
    testing::Values(
        LengthRow{Terminal::Plain, 25, 27, {}}, LengthRow{Terminal::Plain, 26, 27, {LongStatus}},
        LengthRow{Terminal::Plain, 24, 26, {}}, LengthRow{Terminal::Plain, 25, 28, {LongApproval}},
        LengthRow{Terminal::Plain, 40, 37, {LongStatus, LongApproval}},
        LengthRow{Terminal::Extended, 25, 37, {}}, LengthRow{Terminal::Extended, 25, 38, {}},
        LengthRow{Terminal::Extended, 25, 39, {LongApproval}},
        LengthRow{Terminal::Extended, 36, 38, {}},
        LengthRow{Terminal::Extended, 37, 38, {LongStatus}},
        LengthRow{Terminal::Extended, 200, 39, {LongStatus, LongApproval}}),
    SentenceName());

// All faults of one record, in their order.
TEST(StoredStatusTest, OrderOfTheMessages) {
  QByteArray record = Record(QByteArray(26, '\x11'), "unknown date", QByteArray(28, ' '));
  record.back() = static_cast<char>(record.back() ^ 0x01);
  const StatusReading status(record);
  EXPECT_EQ(status.Boxes(),
            Texts({BadChecksum, BadDate, BadApproval, LongStatus, LongDate, LongApproval}));
  status.reading.ExpectInformationBoxes({BadChecksum});
}

}  // namespace
}  // namespace kartocheck::test
