#include "terminal/command_catalogue.h"

#include <gtest/gtest.h>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"
#include "text/hex_text.h"

namespace kartocheck::test {
namespace {

namespace cat = CommandCatalogue;

struct CommandRow {
  const char* name;
  QStringView entry;
  const char* bytes;  // as the standards write them: header, Lc, data, Le
  int count;

  friend std::ostream& operator<<(std::ostream& out, const CommandRow& row) {
    return out << row.name;
  }
};

class CatalogueEntryTest : public testing::TestWithParam<CommandRow> {};

TEST_P(CatalogueEntryTest, Bytes) {
  const CommandRow& row = GetParam();
  const QByteArray expected = QByteArray::fromHex(QByteArray(row.bytes));
  EXPECT_EQ(hex::Decode(row.entry), expected);
  EXPECT_EQ(expected.size(), row.count);
  EXPECT_EQ(row.entry.size(), 2 * row.count) << "no trailing blanks";
  EXPECT_EQ(row.entry, row.entry.toString().toUpper());
}

const std::vector<CommandRow> Entries{
    {"ResetCt", cat::ResetCt, "20 11 00 00 00", 5},
    {"RequestIcc1", cat::RequestIcc1, "20 12 01 00 01 01", 6},
    {"RequestIcc2", cat::RequestIcc2, "20 12 02 00 01 01", 6},
    {"SelectKvkOld", cat::SelectKvkOld, "00 A4 04 00 06 D2 80 00 00 01 01", 11},
    {"SelectKvk", cat::SelectKvk, "00 A4 04 00 06 D2 76 00 00 01 01", 11},
    {"ReadBinary", cat::ReadBinary, "00 B0 00 00 00", 5},
    {"EjectIcc1Ack", cat::EjectIcc1Ack, "20 15 01 01 01 01", 6},
    {"GetStatusManufacturer", cat::GetStatusManufacturer, "20 13 00 46 00", 5},
    {"GetStatusIcc", cat::GetStatusIcc, "20 13 00 80 00", 5},
    {"GetStatusFunctionalUnits", cat::GetStatusFunctionalUnits, "20 13 00 81 00", 5},
    {"EraseBinary", cat::EraseBinary, "00 0E 00 00", 4},
    {"ResetIcc1", cat::ResetIcc1, "20 11 01 00", 4},
    {"SelectEfDir", cat::SelectEfDir, "00 A4 02 0C 02 2F 00", 7},
    {"SelectEfAtr", cat::SelectEfAtr, "00 A4 02 0C 02 2F 01", 7},
    {"SelectEfGdo", cat::SelectEfGdo, "00 A4 02 0C 02 2F 02", 7},
    {"SelectDfHca", cat::SelectDfHca, "00 A4 04 0C 06 D2 76 00 00 01 02", 11},
    {"SelectEfPd", cat::SelectEfPd, "00 A4 02 0C 02 D0 01", 7},
    {"SelectEfVd", cat::SelectEfVd, "00 A4 02 0C 02 D0 02", 7},
    {"SelectEfGvd", cat::SelectEfGvd, "00 A4 02 0C 02 D0 03", 7},
    {"SelectEfStatusVd", cat::SelectEfStatusVd, "00 A4 02 0C 02 D0 0C", 7},
    {"ReadBinaryFe", cat::ReadBinaryFe, "00 B0 00 00 FE", 5},
    {"ReadBinarySfi2", cat::ReadBinarySfi2, "00 B0 82 00 00", 5},
    {"ReadRecordF4", cat::ReadRecordF4, "00 B2 01 F4 00", 5},
    {"ReadBinarySfi29", cat::ReadBinarySfi29, "00 B0 9D 00 00", 5},
    {"EjectIcc1", cat::EjectIcc1, "20 15 01 00 01 00", 6},
};

INSTANTIATE_TEST_SUITE_P(CommandCatalogue, CatalogueEntryTest, testing::ValuesIn(Entries),
                         SentenceName());

TEST(CommandCatalogueTest, NoTwoEntriesAreTheSame) {
  std::set<QString> texts;
  for (const CommandRow& row : Entries) texts.insert(row.entry.toString());
  EXPECT_EQ(texts.size(), 25U);
}

TEST(CommandCatalogueTest, TheKvkSelectsDifferInTheSecondByteOfTheIdentifierOnly) {
  const QByteArray old = *hex::Decode(cat::SelectKvkOld);
  const QByteArray current = *hex::Decode(cat::SelectKvk);
  for (int i = 0; i < 11; ++i) EXPECT_EQ(old[i] != current[i], i == 6) << "byte " << i;
}

}  // namespace
}  // namespace kartocheck::test
