#include "simulator/bytes.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

struct HexRow {
  const char* Name;
  const char* Text;
  std::optional<std::string> Expected;
};

class HexText : public testing::TestWithParam<HexRow> {};

TEST_P(HexText, IsRead) {
  const auto bytes = BytesFromHex(GetParam().Text);
  ASSERT_EQ(bytes.has_value(), GetParam().Expected.has_value());
  if (bytes) {
    EXPECT_EQ(ToHex(*bytes), *GetParam().Expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, HexText,
                         testing::Values(HexRow{"Empty", "", ""}, HexRow{"Upper", "0AF0", "0AF0"},
                                         HexRow{"Lower", "0af0", "0AF0"},
                                         HexRow{"BlanksBetweenBytes", " 12 C0\r\n\t00 ", "12C000"},
                                         HexRow{"HalfAByte", "123", std::nullopt},
                                         HexRow{"BlankInsideAByte", "1 2", std::nullopt},
                                         HexRow{"NoDigit", "1G", std::nullopt},
                                         HexRow{"Prefix", "0x12", std::nullopt}),
                         test::RowName<HexRow>);

TEST(Bytes, XorOfNothingIsZero) {
  EXPECT_EQ(XorOf({}), 0);
  EXPECT_EQ(XorOf(Bytes{0x12, 0xC0, 0x00}), 0xD2);
}

TEST(Bytes, AnObjectHasAtMost255Bytes) {
  Bytes bytes;
  AppendObject(bytes, 0x80, Bytes(255, 0x41));
  EXPECT_EQ(bytes.size(), 257u);
  EXPECT_EQ(bytes[1], 0xFF);
  EXPECT_THROW(AppendObject(bytes, 0x80, Bytes(256, 0x41)), std::invalid_argument);
}

TEST(Bytes, BigEndianKeepsTheLower16Bits) {
  Bytes bytes;
  AppendBigEndian(bytes, 0x12345);
  EXPECT_EQ(ToHex(bytes), "2345");
}

}  // namespace
}  // namespace ctapi
