#include "text/bytes.h"

#include <QByteArray>

#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

const QByteArray& Five() {
  static const QByteArray Bytes = QByteArray::fromHex("00A1B2C3D4");
  return Bytes;
}

struct BytePieceRow {
  const char* sentence;
  qsizetype index;
  qsizetype length;
  const char* expected;  // digits

  friend std::ostream& operator<<(std::ostream& out, const BytePieceRow& row) {
    return out << row.sentence;
  }
};

class BytesMidTest : public testing::TestWithParam<BytePieceRow> {};

TEST_P(BytesMidTest, Piece) {
  const BytePieceRow& row = GetParam();
  EXPECT_EQ(bytes::Mid(Five(), row.index, row.length).toByteArray(),
            QByteArray::fromHex(row.expected));
}

constexpr qsizetype Largest = std::numeric_limits<qsizetype>::max();

INSTANTIATE_TEST_SUITE_P(Bytes, BytesMidTest,
                         testing::ValuesIn(std::vector<BytePieceRow>{
                             {"the first index is 0", 0, 2, "00A1"},
                             {"a piece inside", 1, 2, "A1B2"},
                             {"a piece up to the end", 3, 2, "C3D4"},
                             {"a piece over the end is cut", 4, 2, "D4"},
                             {"the longest piece is cut", 1, Largest, "A1B2C3D4"},
                             {"a piece past the end is empty", 5, 2, ""},
                             {"far past the end is empty", Largest, Largest, ""},
                             {"a negative index is empty", -1, 2, ""},
                             {"no length is empty", 0, 0, ""},
                             {"a negative length is empty", 0, -1, ""},
                         }),
                         SentenceName());

TEST(BytesTest, APieceOfNothingIsEmpty) {
  EXPECT_TRUE(bytes::Mid({}, 0, 1).isEmpty());
}

TEST(BytesTest, ABytesValueIsUnsigned) {
  for (int value = 0; value < 256; ++value) {
    EXPECT_EQ(bytes::ByteAt(QByteArray(1, static_cast<char>(value)), 0), value);
  }
}

TEST(BytesTest, AMissingByteCountsAsZero) {
  EXPECT_EQ(bytes::ByteAt(Five(), 4), 0xD4);
  EXPECT_EQ(bytes::ByteAt(Five(), 5), 0);
  EXPECT_EQ(bytes::ByteAt(Five(), -1), 0);
  EXPECT_EQ(bytes::ByteAt({}, 0), 0);
}

TEST(BytesTest, NumbersAreBigEndian) {
  EXPECT_EQ(bytes::NumberAt(Five(), 1, 1), 0xA1U);
  EXPECT_EQ(bytes::NumberAt(Five(), 1, 2), 0xA1B2U);
  EXPECT_EQ(bytes::NumberAt(Five(), 1, 4), 0xA1B2C3D4U);
}

TEST(BytesTest, MissingBytesOfANumberCountAsZero) {
  EXPECT_EQ(bytes::NumberAt(Five(), 4, 2), 0xD400U);
  EXPECT_EQ(bytes::NumberAt(Five(), 5, 2), 0U);
  EXPECT_EQ(bytes::NumberAt(Five(), -1, 2), 0U);
  EXPECT_EQ(bytes::NumberAt({}, 0, 4), 0U);
}

}  // namespace
}  // namespace kartocheck::test
