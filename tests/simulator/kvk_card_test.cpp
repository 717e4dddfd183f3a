#include "simulator/kvk_card.h"

#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;
using Identifier = KvkCard::Identifier;

constexpr const char* SelectKvk = "00A4040006D27600000101";
constexpr const char* SelectKvkOld = "00A4040006D28000000101";

std::string Send(KvkCard& card, const char* command) {
  return ToHex(card.Transmit(*BytesFromHex(command)));
}

struct SelectRow {
  const char* Name;
  Identifier Known;
  const char* Command;
  const char* Expected;
};

class KvkSelect : public testing::TestWithParam<SelectRow> {};

TEST_P(KvkSelect, ByApplicationIdentifier) {
  KvkCard card(Bytes{0x60, 0x00}, GetParam().Known);
  EXPECT_EQ(Send(card, GetParam().Command), GetParam().Expected);
  const bool selected = std::string(GetParam().Expected) == "9000";
  EXPECT_EQ(Send(card, "00B0000000"), selected ? "60009000" : "6986");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, KvkSelect,
    testing::Values(
        SelectRow{"CurrentByCurrent", Identifier::Current, SelectKvk, "9000"},
        SelectRow{"CurrentByOld", Identifier::Current, SelectKvkOld, "6A82"},
        SelectRow{"OldByCurrent", Identifier::Old, SelectKvk, "6A82"},
        SelectRow{"OldByOld", Identifier::Old, SelectKvkOld, "9000"},
        SelectRow{"NoneByCurrent", Identifier::None, SelectKvk, "6A82"},
        SelectRow{"NoneByOld", Identifier::None, SelectKvkOld, "6A82"},
        SelectRow{"HealthCareApplication", Identifier::Current, "00A4040C06D27600000102", "6A82"},
        SelectRow{"LongerIdentifier", Identifier::Current, "00A4040007D2760000010100", "6A82"},
        SelectRow{"ByFile", Identifier::Current, "00A4020C02D001", "6A86"}),
    test::RowName<SelectRow>);

struct ReadRow {
  const char* Name;
  const char* Command;
  const char* Expected;
};

class KvkRead : public testing::TestWithParam<ReadRow> {};

TEST_P(KvkRead, OfFourBytes) {
  KvkCard card({0x01, 0x02, 0x03, 0x04});
  ASSERT_EQ(Send(card, SelectKvk), "9000");
  EXPECT_EQ(Send(card, GetParam().Command), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, KvkRead,
                         testing::Values(ReadRow{"All", "00B0000000", "010203049000"},
                                         ReadRow{"FromAnOffset", "00B0000300", "049000"},
                                         ReadRow{"Piece", "00B0000102", "02039000"},
                                         ReadRow{"MoreThanThereIs", "00B00000FE", "010203046282"},
                                         ReadRow{"PastTheEnd", "00B0000400", "6B00"},
                                         ReadRow{"WithoutLe", "00B00000", "6700"},
                                         ReadRow{"CutCommand", "00B000", "6700"},
                                         ReadRow{"Erase", "000E0000", "6D00"},
                                         ReadRow{"OtherClass", "80B0000000", "6E00"}),
                         test::RowName<ReadRow>);

TEST(KvkCard, DeliversMoreThan256BytesAtOnce) {
  KvkCard card(Bytes(259, 0x41));
  ASSERT_EQ(Send(card, SelectKvk), "9000");
  EXPECT_EQ(Send(card, "00B0000000").size(), 2 * (259u + 2));
}

TEST(KvkCard, AResetForgetsTheSelection) {
  KvkCard card({0x60});
  ASSERT_EQ(Send(card, SelectKvk), "9000");
  card.Reset();
  EXPECT_EQ(Send(card, "00B0000000"), "6986");
}

TEST(KvkCard, AFailedSelectForgetsTheSelection) {
  KvkCard card({0x60});
  ASSERT_EQ(Send(card, SelectKvk), "9000");
  ASSERT_EQ(Send(card, SelectKvkOld), "6A82");
  EXPECT_EQ(Send(card, "00B0000000"), "6986");
}

}  // namespace
}  // namespace ctapi
