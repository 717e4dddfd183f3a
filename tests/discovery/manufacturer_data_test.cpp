#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "discovery/terminal_identification.h"
#include "support/dialogue.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct ManufacturerRow {
  const char* sentence;
  const char* answer;  // behind the '<' of a dialogue
  Identification result;
  QStringView manufacturerId;
  QStringView productCode;
  QStringView softwareVersion;

  friend std::ostream& operator<<(std::ostream& out, const ManufacturerRow& row) {
    return out << row.sentence;
  }
};

class ManufacturerDataTest : public testing::TestWithParam<ManufacturerRow> {};

TEST_P(ManufacturerDataTest, Fields) {
  const ManufacturerRow& row = GetParam();
  const std::string script = std::string("> 20 13 00 46 00\n< ") + row.answer;
  Dialogue dialogue(script);
  Link link(dialogue);
  TerminalInfo info;
  info.ManufacturerId = u"old";
  info.ProductCode = u"old";
  info.SoftwareVersion = u"old";
  info.ModelName = u"old";
  EXPECT_EQ(ReadManufacturerData(link.session, info), row.result);
  EXPECT_EQ(info.ManufacturerId.Padded(), row.manufacturerId);
  EXPECT_EQ(info.ProductCode.Padded(), row.productCode);
  EXPECT_EQ(info.SoftwareVersion.Padded(), row.softwareVersion.toString().leftJustified(14));
  EXPECT_EQ(info.ModelName.Trimmed(), u"old");
  EXPECT_TRUE(link.dialogs.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, ManufacturerDataTest,
    testing::ValuesIn(std::vector<ManufacturerRow>{
        {"a whole object of 15 bytes", "46 0F 'DENRVPKTD 2.1.3' 90 00", Identification::Finished,
         u"DENRV", u"PKTD ", u"2.1.3"},
        {"a longer object, of which the first 15 bytes count", "46 12 'DENRVPKT-S2.1.3xyz' 90 00",
         Identification::Finished, u"DENRV", u"PKT-S", u"2.1.3"},
        {"letters of the 8-bit code page", "46 0F 'D' C4 'NRVPKTD 2' A4 '1.3' 90 00",
         Identification::Finished, u"DÄNRV", u"PKTD ", u"2€1.3"},
        {"a length of 14", "46 0E 'DENRVPKTD 2.1.3' 90 00", Identification::NoManufacturerData,
         u"old  ", u"old  ", u"old"},
        {"a length of 0", "46 00 90 00", Identification::NoManufacturerData, u"old  ", u"old  ",
         u"old"},
        {"another tag", "47 0F 'DENRVPKTD 2.1.3' 90 00", Identification::NoManufacturerData,
         u"old  ", u"old  ", u"old"},
        {"a cut object that brings 14 bytes", "46 0F 'DENRVPKTD 2.1.' 90 00",
         Identification::NoManufacturerData, u"old  ", u"old  ", u"old"},
        {"the status word does not make up for a missing byte", "46 0F 'DENRVPKTD 2.1' 90 00",
         Identification::NoManufacturerData, u"old  ", u"old  ", u"old"},
        {"an object that promises more but brings 15 bytes", "46 FF 'DENRVPKTD 2.1.3' 90 00",
         Identification::Finished, u"DENRV", u"PKTD ", u"2.1.3"},
        {"a status word alone", "90 00", Identification::NoManufacturerData, u"old  ", u"old  ",
         u"old"},
        {"an error status word alone", "6A 88", Identification::NoManufacturerData, u"old  ",
         u"old  ", u"old"},
        {"the status word behind an object is not judged", "46 0F 'DENRVPKTD 2.1.3' 62 81",
         Identification::Finished, u"DENRV", u"PKTD ", u"2.1.3"},
        {"a failed exchange", "-> -10", Identification::ExchangeFailed, u"old  ", u"old  ", u"old"},
        {"a host error", "-> -127", Identification::ExchangeFailed, u"old  ", u"old  ", u"old"},
        {"an empty response", "", Identification::ExchangeFailed, u"old  ", u"old  ", u"old"},
    }),
    SentenceName());

struct HandheldRow {
  const char* sentence;
  const char* maker;
  const char* header;   // of the second data object, in digits
  const char* version;  // nine bytes, as in a dialogue; fewer where the object is cut
  int tail;             // bytes behind the version
  QStringView expected;

  friend std::ostream& operator<<(std::ostream& out, const HandheldRow& row) {
    return out << row.sentence;
  }
};

class HandheldObjectTest : public testing::TestWithParam<HandheldRow> {};

// The version are bytes 31 to 39 of the object; the digits around it belong to other things.
TEST_P(HandheldObjectTest, SoftwareVersion) {
  const HandheldRow& row = GetParam();
  const std::string script = std::string("> 20 13 00 46 00\n< 46 0F '") + row.maker +
                             "PKTDM2.1.3' " + row.header + " '" + std::string(31, '9') + "' " +
                             row.version + " '" +
                             std::string(static_cast<std::size_t>(row.tail), '9') + "' 90 00";
  Dialogue dialogue(script);
  Link link(dialogue);
  TerminalInfo info;
  EXPECT_EQ(ReadManufacturerData(link.session, info), Identification::Finished);
  EXPECT_EQ(info.SoftwareVersion.Trimmed(), row.expected);
  EXPECT_EQ(info.ProductCode, u"PKTDM");
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, HandheldObjectTest,
    testing::ValuesIn(std::vector<HandheldRow>{
        {"nine digits", "NVRHC", "D7 36", "'123456789'", 14, u"V 123.456.789"},
        {"pairs that are no digits are skipped, the dots stay", "NVRHC", "D7 36", "'1a3 56 8-'", 14,
         u"V 13.56.8"},
        {"no digit at the places of the dots", "NVRHC", "D7 36", "'12.45.789'", 14, u"V 12.45.789"},
        {"no digit at all", "NVRHC", "D7 36", "'abcdefghi'", 14, u"V .."},
        {"zero bytes", "NVRHC", "D7 36", "00 00 00 00 00 00 00 00 00", 14, u"V .."},
        {"the first and the last digit", "NVRHC", "D7 36", "'000999000'", 14, u"V 000.999.000"},
        {"the characters beside the digits", "NVRHC", "D7 36", "'1/2:3/4:5'", 14, u"V 12.3.45"},
        {"a longer object", "NVRHC", "D7 40", "'123456789'", 24, u"V 123.456.789"},
        {"more data behind the object", "NVRHC", "D7 36", "'123456789'", 30, u"V 123.456.789"},
        {"an object of 53 bytes is too short", "NVRHC", "D7 35", "'123456789'", 14, u"2.1.3"},
        {"another object", "NVRHC", "D6 36", "'123456789'", 14, u"2.1.3"},
        {"an object cut behind the version", "NVRHC", "D7 36", "'123456789'", 0, u"V 123.456.789"},
        {"a longer object that is cut", "NVRHC", "D7 40", "'123456789'", 23, u"V 123.456.789"},
        {"an object cut in the version", "NVRHC", "D7 36", "'1234'", 0, u"V 123.4."},
        {"an object cut before the version", "NVRHC", "D7 36", "", 0, u"V .."},
        {"the longest object, cut", "NVRHC", "D7 FF", "'123456789'", 14, u"V 123.456.789"},
        {"the other maker's second object is not read", "DENRV", "D7 36", "'123456789'", 14,
         u"2.1.3"},
        {"a maker in lower case is another maker", "nvrhc", "D7 36", "'123456789'", 14, u"2.1.3"},
    }),
    SentenceName());

TEST(HandheldVersionTest, AnAnnouncedObjectWithoutAByteRebuildsTheVersion) {
  Dialogue dialogue("> 20 13 00 46 00\n< 46 0F 'NVRHCPKTDM2.1.3' D7 36 90 00");
  Link link(dialogue);
  TerminalInfo info;
  EXPECT_EQ(ReadManufacturerData(link.session, info), Identification::Finished);
  EXPECT_EQ(info.SoftwareVersion.Trimmed(), u"V ..");
}

TEST(HandheldVersionTest, WithoutASecondObjectTheVersionStays) {
  Dialogue dialogue("> 20 13 00 46 00\n< 46 0F 'NVRHCPKTDM2.1.3' 90 00");
  Link link(dialogue);
  TerminalInfo info;
  EXPECT_EQ(ReadManufacturerData(link.session, info), Identification::Finished);
  EXPECT_EQ(info.ManufacturerId, u"NVRHC");
  EXPECT_EQ(info.SoftwareVersion.Trimmed(), u"2.1.3");
}

}  // namespace
}  // namespace kartocheck::test
