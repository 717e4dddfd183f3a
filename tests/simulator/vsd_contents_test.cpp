#include "simulator/vsd_contents.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

VsdContents Small() {
  return {.Pd = Bytes{0x01, 0x02, 0x03},
          .Vd = Bytes{0xA1, 0xA2},
          .Gvd = Bytes{0xB1, 0xB2, 0xB3},
          .Fill = Padding::None};
}

TEST(EfPd, IsLengthAndBlock) {
  EXPECT_EQ(ToHex(BuildEfPd(Small())), "0003010203");
}

TEST(EfPd, WithoutABlockHasLengthZero) {
  EXPECT_EQ(ToHex(BuildEfPd({.Fill = Padding::None})), "0000");
}

TEST(EfGvd, IsLengthAndBlock) {
  EXPECT_EQ(ToHex(BuildEfGvd(Small())), "0003B1B2B3");
}

struct VdRow {
  const char* Name;
  GvdPlace Place;
  NoGvdOffsets Missing;
  bool HasVd;
  bool HasGvd;
  const char* Expected;
};

class EfVd : public testing::TestWithParam<VdRow> {};

TEST_P(EfVd, IsOffsetsAndBlocks) {
  const VdRow& row = GetParam();
  VsdContents contents = Small();
  contents.Place = row.Place;
  contents.Missing = row.Missing;
  if (!row.HasVd) contents.Vd.reset();
  if (!row.HasGvd) contents.Gvd.reset();
  EXPECT_EQ(ToHex(BuildEfVd(contents)), row.Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EfVd,
    testing::Values(
        VdRow{"Container", GvdPlace::Container, NoGvdOffsets::Ffff, true, true,
              "00080009000A000CA1A2B1B2B3"},
        VdRow{"Both", GvdPlace::Both, NoGvdOffsets::Zero, true, true, "00080009000A000CA1A2B1B2B3"},
        VdRow{"FileZero", GvdPlace::File, NoGvdOffsets::Zero, true, true, "0008000900000000A1A2"},
        VdRow{"FileFfff", GvdPlace::File, NoGvdOffsets::Ffff, true, true, "00080009FFFFFFFFA1A2"},
        VdRow{"Nowhere", GvdPlace::Nowhere, NoGvdOffsets::Ffff, true, true, "00080009FFFFFFFFA1A2"},
        VdRow{"NoGvd", GvdPlace::Container, NoGvdOffsets::Zero, true, false,
              "0008000900000000A1A2"},
        VdRow{"NoVd", GvdPlace::Container, NoGvdOffsets::Zero, false, true,
              "000000000008000AB1B2B3"},
        VdRow{"Nothing", GvdPlace::Container, NoGvdOffsets::Ffff, false, false,
              "00000000FFFFFFFF"}),
    test::RowName<VdRow>);

TEST(VsdFiles, ArePaddedToTheirSizesOnACard) {
  VsdContents contents = Small();
  contents.Fill = Padding::Full;
  const Bytes pd = BuildEfPd(contents);
  ASSERT_EQ(pd.size(), 850u);
  EXPECT_EQ(ToHex(ByteView(pd).first(7)), "00030102030000");
  EXPECT_EQ(BuildEfVd(contents).size(), 1250u);
  EXPECT_EQ(BuildEfGvd(contents).size(), 600u);
  EXPECT_EQ(BuildEfGvd(contents).back(), 0x00);
}

struct SizeRow {
  const char* Name;
  std::size_t BlockSize;
  Padding Fill;
  bool Fits;
};

class PdSize : public testing::TestWithParam<SizeRow> {};

TEST_P(PdSize, IsLimited) {
  VsdContents contents{.Pd = Bytes(GetParam().BlockSize, 0x11), .Fill = GetParam().Fill};
  if (GetParam().Fits) {
    EXPECT_GE(BuildEfPd(contents).size(), GetParam().BlockSize + 2);
  } else {
    EXPECT_THROW((void)BuildEfPd(contents), std::invalid_argument);
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, PdSize,
                         testing::Values(SizeRow{"FillsTheFile", 848, Padding::Full, true},
                                         SizeRow{"OverflowsTheFile", 849, Padding::Full, false},
                                         SizeRow{"LargerFile", 849, Padding::None, true},
                                         SizeRow{"FillsItsLength", 65535, Padding::None, true},
                                         SizeRow{"OverflowsItsLength", 65536, Padding::None,
                                                 false}),
                         test::RowName<SizeRow>);

TEST(VsdFiles, RefuseBlocksThatEfVdCannotAddress) {
  VsdContents contents{.Vd = Bytes(65528, 0x11), .Fill = Padding::None};
  EXPECT_EQ(ToHex(ByteView(BuildEfVd(contents)).first(4)), "0008FFFF");
  contents.Vd->push_back(0x11);
  EXPECT_THROW((void)BuildEfVd(contents), std::invalid_argument);
}

TEST(VsdFiles, AreTakenAsTheyAre) {
  VsdContents contents = Small();
  contents.Fill = Padding::Full;
  contents.EfPd = Bytes{0x01};
  contents.EfVd = Bytes{0x02};
  contents.EfGvd = Bytes{0x03};
  contents.EfStatusVd = Bytes{0x04};
  EXPECT_EQ(ToHex(BuildEfPd(contents)), "01");
  EXPECT_EQ(ToHex(BuildEfVd(contents)), "02");
  EXPECT_EQ(ToHex(BuildEfGvd(contents)), "03");
  EXPECT_EQ(ToHex(BuildEfStatusVd(contents)), "04");
}

TEST(EfStatusVd, Has25Bytes) {
  EXPECT_EQ(ToHex(BuildEfStatusVd({})), "30323032353034303731303130353800500200000030000004");
  EXPECT_EQ(ToHex(BuildStatus({.Transaction = '1',
                               .Timestamp = "20240101000000",
                               .Version = {1, 2, 3, 4, 5},
                               .Reserved = {6, 7, 8, 9, 10}})),
            "31323032343031303130303030303001020304050607"
            "08090A");
}

TEST(EfStatusVd, RefusesPartsOfOtherLengths) {
  EXPECT_THROW((void)BuildStatus({.Timestamp = "2024"}), std::invalid_argument);
  EXPECT_THROW((void)BuildStatus({.Version = {1}}), std::invalid_argument);
  EXPECT_THROW((void)BuildStatus({.Reserved = {}}), std::invalid_argument);
}

}  // namespace
}  // namespace ctapi
