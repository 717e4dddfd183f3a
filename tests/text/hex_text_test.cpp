#include "text/hex_text.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct PieceRow {
  const char* sentence;
  QStringView text;
  qsizetype position;
  qsizetype length;
  QStringView expected;

  friend std::ostream& operator<<(std::ostream& out, const PieceRow& row) {
    return out << row.sentence;
  }
};

class MidTest : public testing::TestWithParam<PieceRow> {};

TEST_P(MidTest, Piece) {
  const PieceRow& row = GetParam();
  EXPECT_EQ(hex::Mid(row.text, row.position, row.length), row.expected);
}

INSTANTIATE_TEST_SUITE_P(HexText, MidTest,
                         testing::ValuesIn(std::vector<PieceRow>{
                             {"the first position is 1", u"0123456789", 1, 2, u"01"},
                             {"a piece inside", u"0123456789", 5, 4, u"4567"},
                             {"a piece up to the end", u"0123456789", 9, 2, u"89"},
                             {"a piece over the end is cut", u"0123456789", 9, 6, u"89"},
                             {"a piece past the end is empty", u"0123456789", 11, 2, u""},
                             {"far past the end is empty", u"01", 1'000'000, 2, u""},
                             {"position 0 is empty", u"0123", 0, 2, u""},
                             {"a negative position is empty", u"0123", -3, 2, u""},
                             {"no length is empty", u"0123", 1, 0, u""},
                             {"a negative length is empty", u"0123", 1, -1, u""},
                             {"an empty text", u"", 1, 2, u""},
                         }),
                         SentenceName());

TEST(HexTextTest, FromTakesTheRest) {
  EXPECT_EQ(hex::From(u"012345", 3), u"2345");
  EXPECT_EQ(hex::From(u"012345", 7), u"");
  EXPECT_EQ(hex::From(u"012345", 0), u"");
}

TEST(HexTextTest, RightTakesTheEnd) {
  EXPECT_EQ(hex::Right(u"01239000", 4), u"9000");
  EXPECT_EQ(hex::Right(u"90", 4), u"90");
  EXPECT_EQ(hex::Right(u"", 4), u"");
  EXPECT_EQ(hex::Right(u"9000", -1), u"");
}

struct ByteRow {
  const char* sentence;
  QStringView text;
  qsizetype position;
  int expected;

  friend std::ostream& operator<<(std::ostream& out, const ByteRow& row) {
    return out << row.sentence;
  }
};

class ByteAtTest : public testing::TestWithParam<ByteRow> {};

TEST_P(ByteAtTest, Value) {
  const ByteRow& row = GetParam();
  EXPECT_EQ(hex::ByteAt(row.text, row.position), row.expected);
}

INSTANTIATE_TEST_SUITE_P(HexText, ByteAtTest,
                         testing::ValuesIn(std::vector<ByteRow>{
                             {"the most significant digit comes first", u"0F", 1, 0x0F},
                             {"a byte inside", u"0001F0", 5, 0xF0},
                             {"lower-case digits count", u"aF", 1, 0xAF},
                             {"half a byte at the end is missing", u"01F", 3, 0},
                             {"a byte past the end is missing", u"01", 3, 0},
                             {"a byte before the start is missing", u"01", -1, 0},
                             {"a first digit that is none", u"G1", 1, 0},
                             {"a second digit that is none", u"1G", 1, 0},
                             {"the characters beside the digits are none (slash)", u"1/", 1, 0},
                             {"the characters beside the digits are none (colon)", u"1:", 1, 0},
                             {"the characters beside the digits are none (at)", u"1@", 1, 0},
                             {"the characters beside the digits are none (backquote)", u"1`", 1, 0},
                             {"the characters beside the digits are none (small g)", u"1g", 1, 0},
                             {"a full-width digit is none", u"1１", 1, 0},
                         }),
                         SentenceName());

TEST(HexTextTest, EveryByteIsReadAndWritten) {
  const QString digits = QStringLiteral("0123456789ABCDEF");
  for (int value = 0; value < 256; ++value) {
    SCOPED_TRACE(value);
    const QString text = QString(digits.at(value / 16)) + digits.at(value % 16);
    EXPECT_EQ(hex::ByteAt(text, 1), value);
    EXPECT_EQ(hex::Encode(QByteArray(1, static_cast<char>(value))), text);
    EXPECT_EQ(hex::Decode(text), QByteArray(1, static_cast<char>(value)));
  }
}

TEST(HexTextTest, NumbersAreBigEndian) {
  EXPECT_EQ(hex::NumberAt(u"00A1B2C3D4", 3, 1), 0xA1U);
  EXPECT_EQ(hex::NumberAt(u"00A1B2C3D4", 3, 2), 0xA1B2U);
  EXPECT_EQ(hex::NumberAt(u"00A1B2C3D4", 3, 4), 0xA1B2C3D4U);
}

TEST(HexTextTest, MissingBytesOfANumberCountAsZero) {
  EXPECT_EQ(hex::NumberAt(u"01", 1, 2), 0x0100U);
  EXPECT_EQ(hex::NumberAt(u"", 1, 2), 0U);
}

struct XorRow {
  const char* sentence;
  QStringView text;
  qsizetype first;
  qsizetype last;
  int expected;

  friend std::ostream& operator<<(std::ostream& out, const XorRow& row) {
    return out << row.sentence;
  }
};

class XorTest : public testing::TestWithParam<XorRow> {};

TEST_P(XorTest, Sum) {
  const XorRow& row = GetParam();
  EXPECT_EQ(hex::Xor(row.text, row.first, row.last), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    HexText, XorTest,
    testing::ValuesIn(std::vector<XorRow>{
        {"a whole text", u"0102F0", 1, 6, 0xF3},
        {"the byte that starts at the last position takes part", u"0102F0", 1, 3, 0x03},
        {"the byte that starts behind the last position does not", u"0102F0", 1, 2, 0x01},
        {"the last position may be a second digit", u"0102F0", 1, 4, 0x03},
        {"from a later byte", u"0102F0", 3, 5, 0xF2},
        {"the last before the first yields 0", u"0102F0", 5, 4, 0},
        {"a range past the end takes what is there", u"0102F0", 1, 100, 0xF3},
        {"a range all past the end yields 0", u"0102F0", 7, 100, 0},
        {"a negative last position yields 0", u"0102F0", 1, -5, 0},
        {"a first position below 1 yields 0", u"0102F0", -1, 5, 0},
        {"half a byte at the end takes no part", u"0102F", 1, 5, 0x03},
        {"an empty text yields 0", u"", 1, 10, 0},
    }),
    SentenceName());

TEST(HexTextTest, ValueOfAWholeText) {
  EXPECT_EQ(hex::Value(u"0"), 0U);
  EXPECT_EQ(hex::Value(u"ED"), 0xEDU);
  EXPECT_EQ(hex::Value(u"00000000000000FF"), 0xFFU);
  EXPECT_EQ(hex::Value(u"FFFFFFFF"), 0xFFFFFFFFU);
  EXPECT_EQ(hex::Value(u"100000000"), std::nullopt);
  EXPECT_EQ(hex::Value(QString(1000, u'F')), std::nullopt);
  EXPECT_EQ(hex::Value(u""), std::nullopt);
  EXPECT_EQ(hex::Value(u"0x12"), std::nullopt);
  EXPECT_EQ(hex::Value(u"-1"), std::nullopt);
  EXPECT_EQ(hex::Value(u" 1"), std::nullopt);
}

TEST(HexTextTest, EncodingKeepsLeadingZerosAndIsUpperCase) {
  EXPECT_EQ(hex::Encode(QByteArrayView("\x0A\xF0\x00\xff", 4)), u"0AF000FF");
  EXPECT_EQ(hex::Encode({}), u"");
}

TEST(HexTextTest, DecodingTakesWholeBytesOfDigitsOnly) {
  EXPECT_EQ(hex::Decode(u"2013004600"), QByteArray("\x20\x13\x00\x46\x00", 5));
  EXPECT_EQ(hex::Decode(u""), QByteArray());
  EXPECT_EQ(hex::Decode(u"201"), std::nullopt);
  EXPECT_EQ(hex::Decode(u"20 1"), std::nullopt);
  EXPECT_EQ(hex::Decode(u"20XY"), std::nullopt);
}

}  // namespace
}  // namespace kartocheck::test
