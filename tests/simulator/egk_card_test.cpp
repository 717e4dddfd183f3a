#include "simulator/egk_card.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "simulator/hex.h"
#include "simulator/simulated_terminal.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

constexpr const char* SelectRoot = "00A4040C07D2760001448000";
constexpr const char* SelectHca = "00A4040C06D27600000102";
constexpr const char* SelectPd = "00A4020C02D001";
constexpr const char* SelectVd = "00A4020C02D002";
constexpr const char* SelectGvd = "00A4020C02D003";
constexpr const char* SelectStatusVd = "00A4020C02D00C";
constexpr const char* ReadGdo = "00B0820000";
constexpr const char* Status = "30323032353034303731303130353800500200000030000004";

EgkContents Contents() {
  return {.Vsd = {.Pd = Bytes{0x01, 0x02, 0x03},
                  .Vd = Bytes{0xA1, 0xA2},
                  .Gvd = Bytes{0xB1},
                  .Fill = Padding::None}};
}

std::string Send(EgkCard& card, const char* command) {
  return ToHex(card.Transmit(*BytesFromHex(command)));
}

// Commands before the one that matters; each must be answered 9000.
void Prepare(EgkCard& card, std::initializer_list<const char*> commands) {
  for (const char* const command : commands) ASSERT_EQ(Send(card, command), "9000") << command;
}

TEST(EgkCard, TellsItsSerialNumber) {
  EgkCard card(Contents());
  EXPECT_EQ(Send(card, ReadGdo), "5A0A802760012300000000179000");
  EgkContents contents = Contents();
  contents.Iccsn = "8027";
  EXPECT_EQ(Send(*std::make_unique<EgkCard>(contents), ReadGdo), "5A0280279000");
}

struct SerialRow {
  const char* Name;
  const char* Iccsn;
};

class WrongSerialNumber : public testing::TestWithParam<SerialRow> {};

TEST_P(WrongSerialNumber, IsRefused) {
  EgkContents contents = Contents();
  contents.Iccsn = GetParam().Iccsn;
  EXPECT_THROW((void)EgkCard(contents), std::invalid_argument);
}

INSTANTIATE_TEST_SUITE_P(Rows, WrongSerialNumber,
                         testing::Values(SerialRow{"OddNumberOfDigits", "802"},
                                         SerialRow{"NoDigits", "80AB"},
                                         SerialRow{"Blank", "80 27"}),
                         test::RowName<SerialRow>);

TEST(EgkCard, IsReadFileByFile) {
  EgkCard card(Contents());
  Prepare(card, {SelectHca, SelectVd});
  EXPECT_EQ(Send(card, "00B0000004"), "000800099000");
  EXPECT_EQ(Send(card, "00B0000404"), "000A000A9000");
  EXPECT_EQ(Send(card, "00B0000802"), "A1A29000");
  EXPECT_EQ(Send(card, "00B0000A01"), "B19000");
  Prepare(card, {SelectHca, SelectPd});
  EXPECT_EQ(Send(card, "00B0000002"), "00039000");
  EXPECT_EQ(Send(card, "00B0000203"), "0102039000");
  Prepare(card, {SelectHca, SelectStatusVd});
  EXPECT_EQ(Send(card, "00B0000019"), std::string(Status) + "9000");
}

struct GvdRow {
  const char* Name;
  GvdPlace Place;
  const char* Offsets;
  const char* File;
};

class GvdOnCard : public testing::TestWithParam<GvdRow> {};

TEST_P(GvdOnCard, StandsInItsPlace) {
  EgkContents contents = Contents();
  contents.Vsd.Place = GetParam().Place;
  EgkCard card(contents);
  Prepare(card, {SelectHca, SelectVd});
  EXPECT_EQ(Send(card, "00B0000404"), GetParam().Offsets);
  Prepare(card, {SelectGvd});
  EXPECT_EQ(Send(card, "00B0000003"), GetParam().File);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, GvdOnCard,
    testing::Values(GvdRow{"Container", GvdPlace::Container, "000A000A9000", "6982"},
                    GvdRow{"File", GvdPlace::File, "000000009000", "0001B19000"},
                    GvdRow{"Both", GvdPlace::Both, "000A000A9000", "0001B19000"},
                    GvdRow{"Nowhere", GvdPlace::Nowhere, "000000009000", "6982"}),
    test::RowName<GvdRow>);

TEST(EgkCard, AGivenEfGvdCanBeRead) {
  EgkContents contents = Contents();
  contents.Vsd.EfGvd = Bytes{0x00, 0x00};
  EgkCard card(contents);
  Prepare(card, {SelectHca, SelectGvd});
  EXPECT_EQ(Send(card, "00B0000002"), "00009000");
}

struct CommandRow {
  const char* Name;
  std::vector<const char*> Before;
  const char* Command;
  const char* Expected;
};

class EgkCommand : public testing::TestWithParam<CommandRow> {};

TEST_P(EgkCommand, IsAnswered) {
  EgkCard card(Contents());
  for (const char* const command : GetParam().Before) {
    ASSERT_EQ(Send(card, command), "9000") << command;
  }
  EXPECT_EQ(Send(card, GetParam().Command), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(
    Select, EgkCommand,
    testing::Values(CommandRow{"Hca", {}, SelectHca, "9000"},
                    CommandRow{"Root", {SelectHca}, SelectRoot, "9000"},
                    CommandRow{"RootByFile", {SelectHca}, "00A4000C023F00", "9000"},
                    CommandRow{"KvkApplication", {}, "00A4040006D27600000101", "6A82"},
                    CommandRow{"HcaWithResponse", {}, "00A4040006D27600000102", "6A86"},
                    CommandRow{"PartOfTheIdentifier", {}, "00A4040C05D276000001", "6A82"},
                    CommandRow{"FileInAnotherDirectory", {}, SelectPd, "6A82"},
                    CommandRow{"FileOfMfFromHca", {SelectHca}, "00A4020C022F02", "6A82"},
                    CommandRow{"FileOfMf", {}, "00A4020C022F02", "9000"},
                    CommandRow{"Dir", {}, "00A4020C022F00", "9000"},
                    CommandRow{"EfAtr", {}, "00A4020C022F01", "9000"},
                    CommandRow{"UnknownFile", {SelectHca}, "00A4020C02D0FF", "6A82"},
                    CommandRow{"FileWithResponse", {SelectHca}, "00A4020402D001", "6A86"},
                    CommandRow{"ByPath", {SelectHca}, "00A4080C02D001", "6A86"},
                    CommandRow{"ShortFileName", {SelectHca}, "00A4020C01D0", "6700"}),
    test::RowName<CommandRow>);

INSTANTIATE_TEST_SUITE_P(
    ReadBinary, EgkCommand,
    testing::Values(
        CommandRow{"NothingSelected", {}, "00B0000000", "6986"},
        CommandRow{"NothingSelectedInHca", {SelectHca}, "00B0000000", "6986"},
        CommandRow{"UpToTheEnd", {SelectHca, SelectPd}, "00B0000005", "00030102039000"},
        CommandRow{"MoreThanThereIs", {SelectHca, SelectPd}, "00B00000FC", "00030102036282"},
        CommandRow{"AsMuchAsThereIs", {SelectHca, SelectPd}, "00B0000000", "00030102039000"},
        CommandRow{"LastByte", {SelectHca, SelectPd}, "00B0000401", "039000"},
        CommandRow{"AtTheEnd", {SelectHca, SelectPd}, "00B0000501", "6B00"},
        CommandRow{"FarBehindTheEnd", {SelectHca, SelectPd}, "00B07FFF01", "6B00"},
        CommandRow{"WithoutLe", {SelectHca, SelectPd}, "00B00000", "6700"},
        CommandRow{"WithData", {SelectHca, SelectPd}, "00B000000102", "6700"},
        CommandRow{"ShortIdentifierOfPd", {SelectHca}, "00B0810002", "00039000"},
        CommandRow{"ShortIdentifierWithOffset", {SelectHca}, "00B0810202", "01029000"},
        CommandRow{"ShortIdentifierOfVd", {SelectHca}, "00B0820004", "000800099000"},
        CommandRow{"ShortIdentifierOfGvd", {SelectHca}, "00B0830002", "6982"},
        CommandRow{"ShortIdentifierOfStatus", {SelectHca}, "00B08C0001", "309000"},
        CommandRow{"ShortIdentifierOfGdo", {}, "00B0820002", "5A0A9000"},
        CommandRow{"ShortIdentifierOfEfAtr", {}, "00B09D0002", "E0109000"},
        CommandRow{"UnknownShortIdentifier", {}, "00B0850002", "6A82"},
        CommandRow{"ReservedBits", {}, "00B0A20002", "6A86"},
        CommandRow{"RecordFile", {"00A4020C022F00"}, "00B0000000", "6981"}),
    test::RowName<CommandRow>);

INSTANTIATE_TEST_SUITE_P(
    ReadRecord, EgkCommand,
    testing::Values(CommandRow{"RootTemplate", {}, "00B201F400", "61094F07D27600014480009000"},
                    CommandRow{"HcaTemplate", {}, "00B202F400", "61084F06D276000001029000"},
                    CommandRow{"OfTheCurrentFile",
                               {"00A4020C022F00"},
                               "00B2020400",
                               "61084F06D276000001029000"},
                    CommandRow{"OfNoFile", {}, "00B2010400", "6986"},
                    CommandRow{"Record0", {}, "00B200F400", "6A83"},
                    CommandRow{"Record3", {}, "00B203F400", "6A83"},
                    CommandRow{"MoreThanThereIs", {}, "00B202F40B", "61084F06D276000001026282"},
                    CommandRow{"OfATransparentFile", {}, "00B2011400", "6981"},
                    CommandRow{"OfAnUnknownFile", {}, "00B201A400", "6A82"},
                    CommandRow{"OtherMode", {}, "00B201F500", "6A86"},
                    CommandRow{"WithoutLe", {}, "00B201F4", "6700"}),
    test::RowName<CommandRow>);

INSTANTIATE_TEST_SUITE_P(
    Others, EgkCommand,
    testing::Values(CommandRow{"OtherClass", {}, "80B0820000", "6E00"},
                    CommandRow{"Verify", {}, "0020000108241234FFFFFFFFFF", "6D00"},
                    CommandRow{"EraseBinary", {SelectHca, SelectPd}, "000E0000", "6D00"},
                    CommandRow{"CutCommand", {}, "00B0", "6700"},
                    CommandRow{"Empty", {}, "", "6700"}),
    test::RowName<CommandRow>);

TEST(EgkCard, AShortIdentifierMakesItsFileTheCurrentOne) {
  EgkCard card(Contents());
  Prepare(card, {SelectHca});
  EXPECT_EQ(Send(card, "00B0810001"), "009000");
  EXPECT_EQ(Send(card, "00B0000203"), "0102039000");
}

TEST(EgkCard, AFailedSelectKeepsTheCurrentFile) {
  EgkCard card(Contents());
  Prepare(card, {SelectHca, SelectPd});
  EXPECT_EQ(Send(card, "00A4020C02D0FF"), "6A82");
  EXPECT_EQ(Send(card, "00A4040006D27600000101"), "6A82");
  EXPECT_EQ(Send(card, "00B0000002"), "00039000");
}

TEST(EgkCard, AResetSelectsMfAndNoFile) {
  EgkCard card(Contents());
  Prepare(card, {SelectHca, SelectPd});
  card.Reset();
  EXPECT_EQ(Send(card, "00B0000000"), "6986");
  EXPECT_EQ(Send(card, ReadGdo).substr(0, 4), "5A0A");
}

TEST(EgkCard, ADeactivatedApplicationIsSelectedButNotRead) {
  EgkContents contents = Contents();
  contents.Hca = ApplicationState::Deactivated;
  EgkCard card(contents);
  EXPECT_EQ(Send(card, SelectHca), "6283");
  EXPECT_EQ(Send(card, SelectPd), "9000");
  EXPECT_EQ(Send(card, "00B0000002"), "6982");
  Prepare(card, {SelectRoot});
  EXPECT_EQ(Send(card, ReadGdo).substr(0, 4), "5A0A");
}

TEST(EgkCard, AMissingApplicationIsNotFound) {
  EgkContents contents = Contents();
  contents.Hca = ApplicationState::Missing;
  EgkCard card(contents);
  EXPECT_EQ(Send(card, SelectHca), "6A82");
  EXPECT_EQ(Send(card, ReadGdo).substr(0, 4), "5A0A");
}

TEST(EgkCard, FilesArePaddedOrEndWithTheirData) {
  EgkContents contents = Contents();
  contents.Vsd.Fill = Padding::Full;
  EgkCard card(contents);
  Prepare(card, {SelectHca, SelectPd});
  EXPECT_EQ(Send(card, "00B00000FC").size(), 2 * (252u + 2));
  EXPECT_EQ(Send(card, "00B0035101"), "009000");
  EXPECT_EQ(Send(card, "00B0035201"), "6B00");
}

struct GenerationRow {
  const char* Name;
  EgkGeneration Generation;
  const char* AtrStart;
  const char* Version;   // EF.VERSION, record 1
  const char* Version2;  // EF.Version2
};

class Generation : public testing::TestWithParam<GenerationRow> {};

TEST_P(Generation, DiffersInResetAndVersion) {
  EgkContents contents = Contents();
  contents.Generation = GetParam().Generation;
  EgkCard card(contents);
  const Bytes atr = card.Atr();
  EXPECT_EQ(ToHex(atr).substr(0, 18), GetParam().AtrStart);
  // Interface bytes, the historical bytes that the format byte counts, and the check byte.
  EXPECT_EQ(atr.size(), 9 + (atr[1] & 0x0Fu) + 1);
  EXPECT_EQ(XorOf(ByteView(atr).subspan(1)), 0);
  EXPECT_EQ(Send(card, "00B2018400"), GetParam().Version);
  EXPECT_EQ(Send(card, "00B0910000"), GetParam().Version2);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Generation,
    testing::Values(GenerationRow{"G1", EgkGeneration::G1, "3B9A1881B1FE451F03", "00200200009000",
                                  "6A82"},
                    GenerationRow{"G1Plus", EgkGeneration::G1Plus, "3B9A1881B1FE451F03",
                                  "00300000009000", "6A82"},
                    GenerationRow{"G21", EgkGeneration::G21, "3B9A9781B1FE451F03", "6A82",
                                  "EF0AC003020000C1030404009000"}),
    test::RowName<GenerationRow>);

TEST(EgkInATerminal, IsAProcessorCard) {
  SimulatedTerminal terminal(ProfileOf("gamma").value());
  terminal.Insert(EgkCard(Contents()));
  const auto send = [&terminal](const char* command) {
    const Bytes bytes = *BytesFromHex(command);
    return ToHex(bytes.front() == 0x20 ? terminal.TransmitToTerminal(bytes)
                                       : terminal.TransmitToCard(bytes));
  };
  EXPECT_EQ(send("2011000000"), "9000");
  EXPECT_EQ(send("201201000101"), "9001");
  EXPECT_EQ(send("201201000101"), "6201");
  EXPECT_EQ(send("20110100"), "9001");
  EXPECT_EQ(send("2011010100"), ToHex(EgkCard(Contents()).Atr()) + "9001");
  EXPECT_EQ(send("00A4040006D27600000101"), "6A82");
  EXPECT_EQ(send(SelectHca), "9000");
  EXPECT_EQ(send(SelectPd), "9000");
  EXPECT_EQ(send("20110100"), "9001");
  EXPECT_EQ(send("00B0000000"), "6986");
  EXPECT_EQ(send(ReadGdo), "5A0A802760012300000000179000");
  EXPECT_EQ(send("000E0000"), "6D00");
}

}  // namespace
}  // namespace ctapi
