#include "host/parity_marks.h"

#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/hex.h"

namespace ctapi::host {
namespace {

using test::PrintTo;
using test::RowName;
using test::ToHex;

struct MarkRow {
  const char* Name;
  const char* Marked;
  const char* Bytes;
  bool Damaged;
};

class MarkedBytes : public testing::TestWithParam<MarkRow> {};

TEST_P(MarkedBytes, LoseTheirMarksHoweverTheyAreSplit) {
  const std::vector<std::uint8_t> marked = *BytesFromHex(GetParam().Marked);
  for (std::size_t split = 0; split <= marked.size(); ++split) {
    ParityMarks marks;
    LinePort::Reception reception;
    marks.Take(ByteView(marked).first(split), reception);
    marks.Take(ByteView(marked).subspan(split), reception);
    EXPECT_EQ(ToHex(reception.Received), GetParam().Bytes) << split;
    EXPECT_EQ(reception.Damaged, GetParam().Damaged) << split;
  }
}

INSTANTIATE_TEST_SUITE_P(Host, MarkedBytes,
                         testing::Values(MarkRow{"Plain", "21 00 02 90", "21000290", false},
                                         MarkRow{"ByteFf", "21 FF FF 90", "21FF90", false},
                                         MarkRow{"Damaged", "21 FF 00 02 90", "210290", true},
                                         MarkRow{"DamagedFf", "FF 00 FF 90", "FF90", true},
                                         MarkRow{"Break", "FF 00 00", "00", true}),
                         RowName<MarkRow>);

TEST(MarkedBytes, BeginAnewAfterAReset) {
  ParityMarks marks;
  LinePort::Reception reception;
  marks.Take(std::vector<std::uint8_t>{0xFF}, reception);
  marks.Reset();
  marks.Take(std::vector<std::uint8_t>{0x00}, reception);
  EXPECT_EQ(ToHex(reception.Received), "00");
  EXPECT_FALSE(reception.Damaged);
}

}  // namespace
}  // namespace ctapi::host
