#include <gtest/gtest.h>
#include <string_view>
#include <vector>

#include "kvk/insured_data.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

struct ElementRow {
  int tag;
  int width;
  int kind;
  QStringView label;
};

TEST(ElementTableTest, TagsWidthsKindsAndLabelsOfTheKvk) {
  const std::vector<ElementRow> expected{
      {0x80, 28, 0, u"Krankenkassenname:"},
      {0x81, 7, 1, u"Krankenkassennummer:"},
      {0x82, 12, 1, u"Versichertennummer:"},
      {0x8F, 5, 1, u"VKNR:"},
      {0x83, 4, 1, u"Versichertenstatus:"},
      {0x90, 3, 0, u"Statusergänzung:"},
      {0x84, 15, 0, u"Titel:"},
      {0x85, 28, 0, u"Vorname:"},
      {0x86, 15, 0, u"Namenszusatz:"},
      {0x87, 28, 0, u"Familienname:"},
      {0x88, 8, 1, u"Geburtsdatum:"},
      {0x89, 28, 0, u"Straße:"},
      {0x8A, 3, 0, u"Wohnsitzländercode:"},
      {0x8B, 7, 0, u"Postleitzahl:"},
      {0x8C, 23, 0, u"Ortsname:"},
      {0x8D, 4, 1, u"Gültigkeitsdatum:"},
      {0x8E, 1, 2, u""},
      {0x91, 8, 1, u"Einlesedatum:"},
      {0x92, 3, 1, u"Zulassungsnummer:"},
      {0x93, 1, 2, u""},
  };
  ASSERT_EQ(ElementTable.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(ElementTable[i].Tag, expected[i].tag);
    EXPECT_EQ(ElementTable[i].Width, expected[i].width);
    EXPECT_EQ(static_cast<int>(ElementTable[i].Kind), expected[i].kind);
    EXPECT_EQ(QStringView(ElementTable[i].Label), expected[i].label);
  }
}

// Reports are read by other programs: a key stays what it is.
TEST(ElementTableTest, KeysOfReportsAndScenarios) {
  std::vector<std::string_view> keys;
  for (const ElementDescription& element : ElementTable) keys.push_back(element.Key);
  EXPECT_EQ(keys, (std::vector<std::string_view>{
                      "insurerName", "insurerNumber",    "insuredNumber",  "vknr",
                      "status",      "statusSupplement", "title",          "firstName",
                      "nameAffix",   "lastName",         "birthDate",      "street",
                      "countryCode", "postalCode",       "town",           "validUntil",
                      "checksum",    "readingDate",      "approvalNumber", "checksumSupplement"}));
}

TEST(ElementTableTest, TheSupplementIsAMobileTerminals) {
  std::vector<std::string_view> keys;
  for (const ElementDescription& element : ElementTable) {
    if (element.Part == ElementPart::Supplement) keys.push_back(element.Key);
  }
  EXPECT_EQ(keys,
            (std::vector<std::string_view>{"readingDate", "approvalNumber", "checksumSupplement"}));
}

}  // namespace
}  // namespace kartocheck::test
