#include "simulator/stored_egk_record.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "simulator/hex.h"
#include "simulator/simulated_terminal.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

constexpr const char* SelectHca = "00A4040C06D27600000102";

// Two status files that were made independently of this builder.
constexpr const char* Status69 =
    "A01930323032353034303731303130353800500200000030000004910830353033323032"
    "34921B44454E52563B44454D4F5445524D3B312E322E333A342E352E362093013F";
constexpr const char* Status80 =
    "A01930323032353034303731303130353800500200000030000004910830353033323032"
    "34922644454E52563B44454D4F5445524D3B3030312E3030322E3030333A3030342E3030"
    "352E303036930122";

StoredEgkContents Contents(bool extended = false) {
  StoredEgkContents contents{.Vsd = {.Pd = Bytes{0x01, 0x02, 0x03},
                                     .Vd = Bytes{0xA1, 0xA2},
                                     .Gvd = Bytes{0xB1},
                                     .Place = extended ? GvdPlace::File : GvdPlace::Container,
                                     .Fill = Padding::None},
                             .Extended = extended};
  if (extended) contents.Status.ApprovalNumber = "DENRV;DEMOTERM;001.002.003:004.005.006";
  return contents;
}

std::string Send(StoredEgkRecord& record, const char* command) {
  return ToHex(record.Transmit(*BytesFromHex(command)));
}

StoredEgkRecord Selected(const StoredEgkContents& contents) {
  StoredEgkRecord record(contents);
  EXPECT_EQ(Send(record, SelectHca), "9000");
  return record;
}

TEST(RecordStatusFile, OfAPlainRecord) {
  EXPECT_EQ(ToHex(BuildRecordStatus(Contents())), Status69);
}

TEST(RecordStatusFile, OfAnExtendedRecord) {
  EXPECT_EQ(ToHex(BuildRecordStatus(Contents(true))), Status80);
}

TEST(RecordStatusFile, WithRawStatusFirst) {
  StoredEgkContents contents = Contents();
  contents.Status.Layout = StatusLayout::RawStatus;
  const Bytes file = BuildRecordStatus(contents);
  // The same without A0 19, whose XOR is B9: the check becomes 3F XOR B9.
  EXPECT_EQ(ToHex(file), std::string(Status69).substr(4, 132) + "86");
}

TEST(RecordStatusFile, WithoutItsParts) {
  StoredEgkContents contents = Contents();
  contents.Status = {.ReadingDate = std::nullopt,
                     .ApprovalNumber = std::nullopt,
                     .Check = {.How = CheckByte::Kind::Absent}};
  EXPECT_EQ(ToHex(BuildRecordStatus(contents)), std::string(Status69).substr(0, 54));
  contents.Status.Check = {.How = CheckByte::Kind::Empty};
  EXPECT_EQ(ToHex(BuildRecordStatus(contents)), std::string(Status69).substr(0, 54) + "9300");
  contents.Status.Check = {.How = CheckByte::Kind::Given, .Value = 0x5A};
  EXPECT_EQ(ToHex(BuildRecordStatus(contents)), std::string(Status69).substr(0, 54) + "93015A");
}

TEST(RecordStatusFile, AsItIs) {
  StoredEgkContents contents = Contents();
  contents.Vsd.EfStatusVd = Bytes{0xA0, 0x00};
  EXPECT_EQ(ToHex(BuildRecordStatus(contents)), "A000");
}

TEST(RecordStatusFile, ApprovalNumberOfAnotherLength) {
  StoredEgkContents contents = Contents(true);
  contents.Status.ApprovalNumber = "A;B;C";
  contents.Status.ApprovalLength = 37;
  const std::string file = ToHex(BuildRecordStatus(contents));
  EXPECT_EQ(file.size(), 2 * 79u);
  EXPECT_EQ(file.substr(2 * 37, 14), "9225413B423B43");
  contents.Status.ApprovalLength = 4;
  EXPECT_THROW((void)BuildRecordStatus(contents), std::invalid_argument);
}

struct ReadRow {
  const char* Name;
  bool Extended;
  const char* Command;
  const char* Expected;
};

class RecordRead : public testing::TestWithParam<ReadRow> {};

TEST_P(RecordRead, ByShortIdentifier) {
  StoredEgkRecord record = Selected(Contents(GetParam().Extended));
  EXPECT_EQ(Send(record, GetParam().Command), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RecordRead,
    testing::Values(ReadRow{"Pd", false, "00B0810000", "00030102039000"},
                    ReadRow{"PdFromAnOffset", false, "00B0810300", "02039000"},
                    ReadRow{"PdPiece", false, "00B0810002", "00039000"},
                    ReadRow{"PdMoreThanThereIs", false, "00B0810006", "00030102036282"},
                    ReadRow{"PdPastTheEnd", false, "00B0810500", "6B00"},
                    ReadRow{"VdWithGvd", false, "00B0820000", "00080009000A000AA1A2B19000"},
                    ReadRow{"VdWithoutGvd", true, "00B0820000", "0008000900000000A1A29000"},
                    ReadRow{"NoEfGvd", false, "00B0830000", "6A82"},
                    ReadRow{"EfGvd", true, "00B0830000", "0001B19000"},
                    ReadRow{"StatusStart", false, "00B08C0002", "A0199000"},
                    ReadRow{"UnknownFile", false, "00B0840000", "6A82"},
                    ReadRow{"NoCurrentFile", false, "00B0000000", "6986"},
                    ReadRow{"WithoutLe", false, "00B08100", "6700"},
                    ReadRow{"FileByIdentifier", false, "00A4020C02D001", "6A82"},
                    ReadRow{"OtherInstruction", false, "00B201F400", "6D00"},
                    ReadRow{"OtherClass", false, "80B0810000", "6E00"},
                    ReadRow{"CutCommand", false, "00B0", "6700"}),
    test::RowName<ReadRow>);

TEST(StoredEgkRecord, AFileThatIsNotThereIsNotTheCurrentOne) {
  StoredEgkRecord record = Selected(Contents());
  EXPECT_EQ(Send(record, "00B0810001"), "009000");
  EXPECT_EQ(Send(record, "00B0830000"), "6A82");
  EXPECT_EQ(Send(record, "00B0000001"), "6986");
}

TEST(StoredEgkRecord, WithoutStoredGvdHasNoEfGvd) {
  StoredEgkContents contents = Contents(true);
  contents.Vsd.Gvd.reset();
  StoredEgkRecord record = Selected(contents);
  EXPECT_EQ(Send(record, "00B0830000"), "6A82");
}

TEST(StoredEgkRecord, IsNotReadBeforeItsSelection) {
  StoredEgkRecord record(Contents());
  EXPECT_EQ(Send(record, "00B0810000"), "6986");
  EXPECT_EQ(Send(record, SelectHca), "9000");
  EXPECT_EQ(Send(record, "00B0810000"), "00030102039000");
  record.Reset();
  EXPECT_EQ(Send(record, "00B0810000"), "6986");
}

struct StateRow {
  const char* Name;
  ApplicationState State;
  const char* Select;
};

class RecordState : public testing::TestWithParam<StateRow> {};

TEST_P(RecordState, IsToldAtTheSelection) {
  StoredEgkContents contents = Contents();
  contents.Hca = GetParam().State;
  StoredEgkRecord record(contents);
  EXPECT_EQ(Send(record, SelectHca), GetParam().Select);
  EXPECT_EQ(Send(record, "00B0810000"), "6986");
}

INSTANTIATE_TEST_SUITE_P(Rows, RecordState,
                         testing::Values(StateRow{"Missing", ApplicationState::Missing, "6A82"},
                                         StateRow{"Deactivated", ApplicationState::Deactivated,
                                                  "6283"}),
                         test::RowName<StateRow>);

TEST(StoredEgkRecord, DeliversALongFileInOneAnswer) {
  StoredEgkContents contents = Contents();
  contents.Vsd.Fill = Padding::Full;
  StoredEgkRecord record = Selected(contents);
  EXPECT_EQ(Send(record, "00B0820000").size(), 2 * (1250u + 2));
}

TEST(StoredEgkRecord, DeliversALongFileInPieces) {
  StoredEgkContents contents = Contents();
  contents.Vsd.Fill = Padding::Full;
  contents.InPieces = true;
  StoredEgkRecord record = Selected(contents);
  std::string file;
  for (const char* const command : {"00B0810000", "00B0010000", "00B0020000"}) {
    const std::string answer = Send(record, command);
    ASSERT_EQ(answer.size(), 2 * (256u + 2)) << command;
    EXPECT_EQ(answer.substr(2 * 256), "9000");
    file += answer.substr(0, 2 * 256);
  }
  const std::string last = Send(record, "00B0030000");
  EXPECT_EQ(last.size(), 2 * (850u - 768 + 2));
  EXPECT_EQ(last.substr(last.size() - 4), "9000");
  EXPECT_EQ(file + last.substr(0, last.size() - 4), ToHex(BuildEfPd(contents.Vsd)));
  EXPECT_EQ(Send(record, "00B0035200"), "6B00");
}

TEST(StoredEgkRecords, AreReadErasedAndFollowEachOther) {
  SimulatedTerminal terminal(ProfileOf("delta3Mobil").value());
  terminal.Store(StoredEgkRecord(Contents(true)));
  terminal.Store(KvkCard({0x60, 0x00}));
  const auto send = [&terminal](const char* command) {
    const Bytes bytes = *BytesFromHex(command);
    return ToHex(bytes.front() == 0x20 ? terminal.TransmitToTerminal(bytes)
                                       : terminal.TransmitToCard(bytes));
  };
  EXPECT_EQ(send("2011000000"), "9501");
  EXPECT_EQ(send("201201000101"), "9001");
  EXPECT_EQ(send("2011010100"), "9001");
  EXPECT_EQ(send(SelectHca), "9000");
  EXPECT_EQ(send("00B08C0000"), std::string(Status80) + "9000");
  EXPECT_EQ(send("00B0810000"), "00030102039000");
  EXPECT_EQ(send("000E0000"), "9000");
  EXPECT_EQ(send("00B0810000"), "6F00");
  EXPECT_EQ(send("201501000100"), "9000");
  EXPECT_EQ(send("201201000101"), "9000");
  EXPECT_EQ(send("000E0000"), "9000");
  EXPECT_EQ(send("201201000101"), "6200");
}

struct ReleaseRow {
  const char* Name;
  Release State;
  const char* Expected;
};

class EgkRecordRelease : public testing::TestWithParam<ReleaseRow> {};

TEST_P(EgkRecordRelease, GuardsTheFiles) {
  SimulatedTerminal terminal(ProfileOf("delta3Mobil").value(), {.HealthCard = GetParam().State});
  terminal.Store(StoredEgkRecord(Contents(true)));
  ASSERT_EQ(ToHex(terminal.TransmitToTerminal(*BytesFromHex("201201000101"))), "9001");
  ASSERT_EQ(ToHex(terminal.TransmitToCard(*BytesFromHex(SelectHca))), "9000");
  EXPECT_EQ(ToHex(terminal.TransmitToCard(*BytesFromHex("00B08C0000"))), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, EgkRecordRelease,
                         testing::Values(ReleaseRow{"NotReleased", Release::NotReleased, "6501"},
                                         ReleaseRow{"NotInserted", Release::NotInserted, "6900"}),
                         test::RowName<ReleaseRow>);

}  // namespace
}  // namespace ctapi
