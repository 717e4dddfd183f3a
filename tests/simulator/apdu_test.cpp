#include "simulator/apdu.h"

#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

struct CommandRow {
  const char* Name;
  const char* Text;
  bool Valid;
  const char* Data;
  int Le;  // 0: none
};

class ShortCommand : public testing::TestWithParam<CommandRow> {};

TEST_P(ShortCommand, IsTakenApart) {
  const CommandRow& row = GetParam();
  const auto command = ParseCommand(*BytesFromHex(row.Text));
  ASSERT_EQ(command.has_value(), row.Valid);
  if (!command) return;
  EXPECT_EQ(ToHex(command->Data), row.Data);
  EXPECT_EQ(command->Le.value_or(0), row.Le);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ShortCommand,
    testing::Values(CommandRow{"Empty", "", false, "", 0},
                    CommandRow{"ThreeBytes", "00A404", false, "", 0},
                    CommandRow{"HeaderOnly", "20110100", true, "", 0},
                    CommandRow{"LeOf00Is256", "00B0000000", true, "", 256},
                    CommandRow{"LeOfFc", "00B00000FC", true, "", 252},
                    CommandRow{"Data", "201201000101", true, "01", 0},
                    CommandRow{"DataAndLe", "00A40400023F0010", true, "3F00", 16},
                    CommandRow{"DataMissing", "00A40400023F", false, "", 0},
                    CommandRow{"DataTooLong", "00A40400023F001000", false, "", 0},
                    CommandRow{"LcOf00", "00A404000000", false, "", 0}),
    test::RowName<CommandRow>);

TEST(CommandHeader, IsKept) {
  const auto command = ParseCommand(*BytesFromHex("00A4020C02D001"));
  ASSERT_TRUE(command);
  EXPECT_EQ(command->Cla, 0x00);
  EXPECT_EQ(command->Ins, 0xA4);
  EXPECT_EQ(command->P1, 0x02);
  EXPECT_EQ(command->P2, 0x0C);
  EXPECT_EQ(command->Parameters(), 0x020C);
}

struct PieceRow {
  const char* Name;
  std::size_t Offset;
  int Le;
  const char* Expected;
};

class Piece : public testing::TestWithParam<PieceRow> {};

TEST_P(Piece, OfAFileOfFourBytes) {
  const Bytes file{0x01, 0x02, 0x03, 0x04};
  EXPECT_EQ(ToHex(AnswerPiece(file, GetParam().Offset, GetParam().Le)), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, Piece,
                         testing::Values(PieceRow{"Start", 0, 2, "01029000"},
                                         PieceRow{"Middle", 1, 2, "02039000"},
                                         PieceRow{"UpToTheEnd", 2, 2, "03049000"},
                                         PieceRow{"PastTheEnd", 2, 3, "03046282"},
                                         PieceRow{"AllThereIs", 0, 256, "010203049000"},
                                         PieceRow{"LastByte", 3, 1, "049000"},
                                         PieceRow{"OffsetAtTheEnd", 4, 1, "6B00"},
                                         PieceRow{"OffsetBehindTheEnd", 5, 256, "6B00"}),
                         test::RowName<PieceRow>);

}  // namespace
}  // namespace ctapi
