#include "protocol/block.h"

#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/hex.h"

namespace ctapi::host {
namespace {

using test::PrintTo;
using test::RowName;
using test::ToHex;

Bytes FromHex(const char* hex) {
  return *BytesFromHex(hex);
}

struct FrameRow {
  const char* Name;
  Block Content;
  const char* Frame;
};

class EncodedBlock : public testing::TestWithParam<FrameRow> {};

TEST_P(EncodedBlock, HasTheBytesOfTheStandard) {
  EXPECT_EQ(ToHex(Encode(GetParam().Content)), ToHex(FromHex(GetParam().Frame)));
}

INSTANTIATE_TEST_SUITE_P(Host, EncodedBlock,
                         testing::Values(FrameRow{"Resynch", {0x12, 0xC0}, "12 C0 00 D2"},
                                         FrameRow{
                                             "BlockSize", {0x12, 0xC1, {0xFE}}, "12 C1 01 FE 2C"},
                                         FrameRow{"ResetCt",
                                                  {0x12, 0x00, {0x20, 0x11, 0x00, 0x00, 0x00}},
                                                  "12 00 05 20 11 00 00 00 26"},
                                         FrameRow{"ReadBinary",
                                                  {0x02, 0x00, {0x00, 0xB0, 0x82, 0x00, 0x00}},
                                                  "02 00 05 00 B0 82 00 00 35"}),
                         RowName<FrameRow>);

TEST(NodeAddress, NamesDestinationAndSource) {
  EXPECT_EQ(NadTo(Unit::Terminal), 0x12);
  EXPECT_EQ(NadFrom(Unit::Terminal), 0x21);
  EXPECT_EQ(NadTo(Unit::Card), 0x02);
  EXPECT_EQ(NadFrom(Unit::Card), 0x20);
}

class ReceivedBlock : public testing::TestWithParam<FrameRow> {};

TEST_P(ReceivedBlock, IsReadWhole) {
  const FramedBlock framed = ReadBlock(FromHex(GetParam().Frame));
  ASSERT_EQ(framed.State, Framing::Complete);
  EXPECT_EQ(framed.Found.Nad, GetParam().Content.Nad);
  EXPECT_EQ(framed.Found.Pcb, GetParam().Content.Pcb);
  EXPECT_EQ(ToHex(framed.Found.Information), ToHex(GetParam().Content.Information));
}

TEST_P(ReceivedBlock, NeedsMoreUntilItsLastByte) {
  const Bytes frame = FromHex(GetParam().Frame);
  for (std::size_t length = 0; length < frame.size(); ++length) {
    EXPECT_EQ(ReadBlock(ByteView(frame).first(length)).State, Framing::NeedMore) << length;
  }
}

TEST_P(ReceivedBlock, EndsBeforeWhatFollows) {
  Bytes frame = FromHex(GetParam().Frame);
  frame.push_back(0x55);
  const FramedBlock framed = ReadBlock(frame);
  ASSERT_EQ(framed.State, Framing::Complete);
  EXPECT_EQ(framed.Found.Information, GetParam().Content.Information);
}

// No flipped bit passes: the block is refused, or waits for bytes that will not come.
TEST_P(ReceivedBlock, WithAFlippedBitIsNoBlock) {
  const Bytes frame = FromHex(GetParam().Frame);
  for (std::size_t bit = 0; bit < frame.size() * 8; ++bit) {
    Bytes damaged = frame;
    damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ (1U << (bit % 8)));
    EXPECT_NE(ReadBlock(damaged).State, Framing::Complete) << bit;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Host, ReceivedBlock,
    testing::Values(FrameRow{"ResynchResponse", {0x21, 0xE0}, "21 E0 00 C1"},
                    FrameRow{"BlockSizeResponse", {0x21, 0xE1, {0xFE}}, "21 E1 01 FE 3F"},
                    FrameRow{"StatusWord", {0x21, 0x00, {0x90, 0x00}}, "21 00 02 90 00 B3"},
                    FrameRow{"EmptyInformation", {0x21, 0x40}, "21 40 00 61"},
                    FrameRow{"CardChain", {0x20, 0x60, {0x01}}, "20 60 01 01 40"},
                    FrameRow{"Receipt", {0x21, 0x90}, "21 90 00 B1"},
                    FrameRow{"ReceiptOther", {0x20, 0x82}, "20 82 00 A2"},
                    FrameRow{"Abort", {0x21, 0xC2}, "21 C2 00 E3"},
                    FrameRow{"WaitingTime", {0x20, 0xC3, {0x05}}, "20 C3 01 05 E7"}),
    RowName<FrameRow>);

TEST(ReceivedBlock, HoldsUpTo254Bytes) {
  const Bytes information(LargestInformation, 0x5A);
  const Bytes frame = Encode({0x21, 0x00, information});
  EXPECT_EQ(frame.size(), 258U);
  EXPECT_EQ(ReadBlock(frame).Found.Information, information);
}

struct InvalidRow {
  const char* Name;
  const char* Received;
  BlockError Error;
};

class InvalidBlock : public testing::TestWithParam<InvalidRow> {};

TEST_P(InvalidBlock, IsRefusedAtOnce) {
  const FramedBlock framed = ReadBlock(FromHex(GetParam().Received));
  EXPECT_EQ(framed.State, Framing::Invalid);
  EXPECT_EQ(framed.Error, GetParam().Error);
}

INSTANTIATE_TEST_SUITE_P(
    Host, InvalidBlock,
    testing::Values(InvalidRow{"WrongCheck", "21 00 02 90 00 B2", BlockError::Check},
                    InvalidRow{"OwnEcho", "12", BlockError::Other},
                    InvalidRow{"Noise", "FF", BlockError::Other},
                    InvalidRow{"ReservedInformationBit", "21 01", BlockError::Other},
                    InvalidRow{"ReceiptOfUnknownError", "21 83", BlockError::Other},
                    InvalidRow{"ReceiptWithBit6", "21 A0", BlockError::Other},
                    InvalidRow{"UnknownRequest", "21 C4", BlockError::Other},
                    InvalidRow{"UnknownResponse", "21 E4", BlockError::Other},
                    InvalidRow{"ReservedLength", "21 00 FF", BlockError::Other},
                    InvalidRow{"ReceiptWithBytes", "21 80 01", BlockError::Other},
                    InvalidRow{"ResynchWithBytes", "21 E0 01", BlockError::Other},
                    InvalidRow{"BlockSizeWithoutValue", "21 C1 00", BlockError::Other},
                    InvalidRow{"WaitingTimeOfTwoBytes", "21 C3 02", BlockError::Other},
                    InvalidRow{"AbortWithBytes", "21 C2 01", BlockError::Other}),
    RowName<InvalidRow>);

}  // namespace
}  // namespace ctapi::host
