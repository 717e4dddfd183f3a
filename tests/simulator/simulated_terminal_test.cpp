#include "simulator/simulated_terminal.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;
using test::ToHex;

// Commands as callers send them.
constexpr const char* ResetCt = "2011000000";
constexpr const char* ResetIcc = "20110100";
constexpr const char* RequestIcc = "201201000101";
constexpr const char* GetStatusUnits = "2013008100";
constexpr const char* GetStatusMaker = "2013004600";
constexpr const char* GetStatusCard = "2013008000";
constexpr const char* EjectIccAck = "201501010101";
constexpr const char* EjectIcc = "201501000100";
constexpr const char* UsbQueryCommand = "2071000100";
constexpr const char* SelectKvk = "00A4040006D27600000101";
constexpr const char* ReadBinary = "00B0000000";
constexpr const char* EraseBinary = "000E0000";

SimulatedTerminal Terminal(std::string_view family, TerminalState state = {}) {
  return SimulatedTerminal(ProfileOf(family).value(), state);
}

KvkCard Kvk(std::uint8_t content) {
  return KvkCard({0x60, 0x01, content});
}

// The unit is addressed by the command's class, as the program does.
std::string Send(SimulatedTerminal& terminal, const char* command) {
  const Bytes bytes = *BytesFromHex(command);
  return ToHex(bytes.front() == 0x20 ? terminal.TransmitToTerminal(bytes)
                                     : terminal.TransmitToCard(bytes));
}

struct FamilyRow {
  const char* Name;
  const char* Units;
  const char* Maker;
  const char* Reset;
  const char* Usb;
};

class Family : public testing::TestWithParam<FamilyRow> {};

constexpr const char* NoComPort = "no virtual COM port";

std::string Descriptor(const char* product) {
  return std::string("1201000202000040FEFF") + product + "0000010102" + "0001" + "9000";
}

// Maker and product code in hexadecimal digits: DENRV is 44454E5256, NVRHC is 4E56524843.
std::vector<FamilyRow> FamilyRows() {
  return {
      {"gamma", "8101019000", "460F44454E5256504B542D47312E3230209000", "9000", "6D00"},
      {"sigma", "8101019000", "460F44454E5256504B542D53322E3130209000", "9500", "6D00"},
      {"omega", "8101019000", "460F44454E5256504B544F20342E3031209000", "9000", NoComPort},
      {"delta", "8101019000", "460F44454E5256504B544420312E3830209000", "9500", NoComPort},
      {"deltaStationary", "8101019000", "460F44454E5256504B544420312E3830209000", "9000",
       NoComPort},
      {"deltaMobil", "8101019000", "460F44454E5256504B544420322E3430209000", "9501", NoComPort},
      {"delta3", "8101019000", "460F44454E5256504B54444D332E3030209000", "9500", NoComPort},
      {"delta3Mobil", "8101019000", "460F44454E5256504B54444D332E3130209000", "9501", NoComPort},
      {"vedraA", "6D00", "6D00", "9000", "6D00"},
      {"vedraF", "6D00", "6D00", "9500", "6D00"},
      {"vedraG", "6900", "6900", "9000", "6D00"},
      {"pktH", "6F00", "460F44454E5256504B542D48302E3930209000", "9000", "6D00"},
      {"handheld", "8101019000",
       "460F4E56524843504B54444D332E303020D736"
       "20202020202020202020202020202020202020202020202020202020202020"
       "303033303031303032"
       "2020202020202020202020202020"
       "9000",
       "9501", NoComPort},
      {"handheldStationary", "8101019000",
       "460F4E56524843504B54444D332E303020D736"
       "20202020202020202020202020202020202020202020202020202020202020"
       "303033303031303032"
       "2020202020202020202020202020"
       "9000",
       "9000", NoComPort},
      {"unknownProduct", "8101019000", "460F58585453545453542D31312E3030209000", "9000", "6D00"},
      {"unknownAnswer", "6E00", "6E00", "9000", "6D00"},
  };
}

TEST_P(Family, AnswersTheIdentification) {
  const FamilyRow& row = GetParam();
  SimulatedTerminal terminal = Terminal(row.Name);
  EXPECT_EQ(Send(terminal, GetStatusUnits), row.Units);
  EXPECT_EQ(Send(terminal, GetStatusMaker), row.Maker);
  EXPECT_EQ(Send(terminal, ResetCt), row.Reset);
  EXPECT_EQ(Send(terminal, UsbQueryCommand),
            row.Usb == NoComPort ? Descriptor("01") : std::string(row.Usb));
}

INSTANTIATE_TEST_SUITE_P(Families, Family, testing::ValuesIn(FamilyRows()),
                         test::RowName<FamilyRow>);

TEST(TerminalFamilies, AreAllInTheTableAbove) {
  const std::vector<FamilyRow> rows = FamilyRows();
  EXPECT_EQ(TerminalFamilies().size(), rows.size());
  for (const TerminalFamily& family : TerminalFamilies()) {
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(),
                            [&](const FamilyRow& row) { return row.Name == family.Name; }),
              1)
        << family.Name;
  }
  EXPECT_FALSE(ProfileOf("none of them"));
}

TEST(SimulatedTerminal, TellsAVirtualComPort) {
  TerminalProfile profile = ProfileOf("omega").value();
  profile.Usb = UsbQuery::VirtualCom;
  SimulatedTerminal terminal(profile);
  const std::string answer = Send(terminal, UsbQueryCommand);
  EXPECT_EQ(answer, Descriptor("02"));
  EXPECT_EQ(answer.substr(0, 4), "1201");
  EXPECT_EQ(answer.substr(20, 2), "02");
}

TEST(SimulatedTerminal, GivesAManufacturerAnswerAsItIs) {
  TerminalProfile profile = ProfileOf("gamma").value();
  profile.ManufacturerAnswer = Bytes{0x46, 0x0E, 0x90, 0x00};
  SimulatedTerminal terminal(profile);
  EXPECT_EQ(Send(terminal, GetStatusMaker), "460E9000");
}

TEST(SimulatedTerminal, CutsAndPadsTheManufacturerTexts) {
  TerminalProfile profile;
  profile.Maker =
      Manufacturer{.Maker = "TOOLONG", .ProductCode = "P", .Version = "", .HandheldVersion = ""};
  SimulatedTerminal terminal(profile);
  EXPECT_EQ(Send(terminal, GetStatusMaker), "460F544F4F4C4F502020202020202020209000");
}

TEST(SimulatedTerminal, WithoutManufacturerDataKnowsNoSuchObject) {
  SimulatedTerminal terminal{TerminalProfile{}};
  EXPECT_EQ(Send(terminal, GetStatusMaker), "6A00");
}

struct ReadinessRow {
  const char* Name;
  TerminalState State;
  const char* Request;
  const char* Reset;
  const char* Select;
};

class Readiness : public testing::TestWithParam<ReadinessRow> {};

TEST_P(Readiness, OfATerminalWithAKvk) {
  const ReadinessRow& row = GetParam();
  SimulatedTerminal terminal = Terminal("gamma", row.State);
  terminal.Insert(Kvk(1));
  EXPECT_EQ(Send(terminal, RequestIcc), row.Request);
  EXPECT_EQ(Send(terminal, ResetIcc), row.Reset);
  EXPECT_EQ(Send(terminal, SelectKvk), row.Select);
}

INSTANTIATE_TEST_SUITE_P(
    States, Readiness,
    testing::Values(
        ReadinessRow{"Ready", {}, "9000", "9000", "9000"},
        ReadinessRow{
            "OutputToDisplay", {.Medium = OutputMedium::DisplayPrinter}, "9000", "9000", "6985"},
        ReadinessRow{"MenuActive", {.Mode = Condition::MenuActive}, "6900", "6900", "6F00"},
        ReadinessRow{"Locked", {.Mode = Condition::Locked}, "6900", "6900", "6F00"},
        ReadinessRow{
            "LockedSilently", {.Mode = Condition::LockedSilently}, "6200", "9000", "6900"}),
    test::RowName<ReadinessRow>);

TEST(SimulatedTerminal, InItsStationaryModeTheHandheldRefusesEverySelect) {
  SimulatedTerminal terminal = Terminal("handheldStationary");
  terminal.Insert(Kvk(1));
  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, SelectKvk), "6900");
  EXPECT_EQ(Send(terminal, "00A4040C06D27600000102"), "6900");
}

TEST(SimulatedTerminal, WithoutACard) {
  SimulatedTerminal terminal = Terminal("gamma");
  EXPECT_EQ(Send(terminal, RequestIcc), "6200");
  EXPECT_EQ(Send(terminal, ResetIcc), "6400");
  EXPECT_EQ(Send(terminal, SelectKvk), "6F00");
  EXPECT_EQ(Send(terminal, GetStatusCard), "8001009000");
  EXPECT_EQ(Send(terminal, EjectIccAck), "9000");
}

TEST(SimulatedTerminal, ReadsAKvk) {
  SimulatedTerminal terminal = Terminal("gamma");
  terminal.Insert(Kvk(0x77));
  EXPECT_EQ(Send(terminal, ResetCt), "9000");
  EXPECT_EQ(Send(terminal, GetStatusCard), "8001019000");
  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, GetStatusCard), "8001059000");
  EXPECT_EQ(Send(terminal, ResetIcc), "9000");
  EXPECT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6001779000");
  EXPECT_EQ(Send(terminal, EraseBinary), "6D00");
}

TEST(SimulatedTerminal, ACardThatIsActiveCountsAsPresent) {
  SimulatedTerminal terminal = Terminal("gamma");
  terminal.Insert(Kvk(1));
  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, RequestIcc), "6201");
  EXPECT_EQ(Send(terminal, ResetCt), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6F00");
  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
}

TEST(SimulatedTerminal, ANewCardMustBeRequested) {
  SimulatedTerminal terminal = Terminal("gamma");
  terminal.Insert(Kvk(1));
  ASSERT_EQ(Send(terminal, RequestIcc), "9000");
  terminal.Insert(Kvk(2));
  EXPECT_EQ(Send(terminal, SelectKvk), "6F00");
  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6001029000");
  terminal.RemoveCard();
  EXPECT_EQ(Send(terminal, ReadBinary), "6F00");
}

TEST(SimulatedTerminal, WaitsInVainForACardToBeTaken) {
  SimulatedTerminal terminal = Terminal("gamma");
  terminal.Insert(Kvk(1));
  ASSERT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, EjectIccAck), "6200");
  EXPECT_EQ(Send(terminal, SelectKvk), "6F00");
  EXPECT_EQ(Send(terminal, EjectIcc), "9000");
}

TEST(SimulatedTerminal, DeliversTheAnswerToResetOnRequest) {
  SimulatedTerminal terminal = Terminal("gamma");
  terminal.Insert(Kvk(1));
  EXPECT_EQ(Send(terminal, "2012010100"), "A21310919000");
  EXPECT_EQ(Send(terminal, "2011010100"), "A21310919000");
  EXPECT_EQ(Send(terminal, "2011010200"), "6A00");
}

TEST(StoredRecords, AreReadErasedAndFollowEachOther) {
  SimulatedTerminal terminal = Terminal("vedraF");
  terminal.Store(Kvk(1));
  terminal.Store(Kvk(2));
  ASSERT_EQ(terminal.StoredRecords(), 2u);

  EXPECT_EQ(Send(terminal, ResetCt), "9500");
  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6001019000");
  EXPECT_EQ(Send(terminal, EraseBinary), "9000");
  EXPECT_EQ(terminal.StoredRecords(), 1u);
  EXPECT_EQ(Send(terminal, EraseBinary), "6F00");
  EXPECT_EQ(Send(terminal, ReadBinary), "6F00");
  EXPECT_EQ(Send(terminal, EjectIccAck), "9000");

  EXPECT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6001029000");
  EXPECT_EQ(Send(terminal, EraseBinary), "9000");
  EXPECT_EQ(Send(terminal, RequestIcc), "6200");
}

TEST(StoredRecords, ARecordThatWasNotErasedComesAgain) {
  SimulatedTerminal terminal = Terminal("vedraF");
  terminal.Store(Kvk(1));
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Send(terminal, RequestIcc), "9000");
    EXPECT_EQ(Send(terminal, SelectKvk), "9000");
    EXPECT_EQ(Send(terminal, ReadBinary), "6001019000");
    EXPECT_EQ(Send(terminal, EjectIccAck), "9000");
  }
  EXPECT_EQ(terminal.StoredRecords(), 1u);
}

TEST(StoredRecords, ComeBeforeACardInTheSlot) {
  SimulatedTerminal terminal = Terminal("vedraF");
  terminal.Insert(Kvk(9));
  terminal.Store(Kvk(1));
  ASSERT_EQ(Send(terminal, RequestIcc), "9000");
  ASSERT_EQ(Send(terminal, EraseBinary), "9000");
  ASSERT_EQ(Send(terminal, RequestIcc), "9000");
  ASSERT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6001099000");
}

struct ReleaseRow {
  const char* Name;
  Release State;
  const char* Read;
};

class RecordRelease : public testing::TestWithParam<ReleaseRow> {};

TEST_P(RecordRelease, GuardsStoredRecords) {
  SimulatedTerminal terminal = Terminal("delta3Mobil", {.HealthCard = GetParam().State});
  terminal.Store(Kvk(1));
  ASSERT_EQ(Send(terminal, RequestIcc), "9000");
  EXPECT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), GetParam().Read);
  EXPECT_EQ(Send(terminal, EraseBinary), GetParam().Read);
  EXPECT_EQ(terminal.StoredRecords(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Rows, RecordRelease,
                         testing::Values(ReleaseRow{"NotReleased", Release::NotReleased, "6501"},
                                         ReleaseRow{"NotInserted", Release::NotInserted, "6900"}),
                         test::RowName<ReleaseRow>);

TEST(StoredRecords, TheirReleaseDoesNotGuardACardInTheSlot) {
  SimulatedTerminal terminal = Terminal("delta3Mobil", {.HealthCard = Release::NotInserted});
  terminal.Insert(Kvk(1));
  ASSERT_EQ(Send(terminal, RequestIcc), "9000");
  ASSERT_EQ(Send(terminal, SelectKvk), "9000");
  EXPECT_EQ(Send(terminal, ReadBinary), "6001019000");
}

struct RefusalRow {
  const char* Name;
  const char* Command;
  const char* Expected;
};

class RefusedCommand : public testing::TestWithParam<RefusalRow> {};

TEST_P(RefusedCommand, OfCtBcs) {
  SimulatedTerminal terminal = Terminal("omega");
  terminal.Insert(Kvk(1));
  const std::string answer = ToHex(terminal.TransmitToTerminal(*BytesFromHex(GetParam().Command)));
  EXPECT_EQ(answer, GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, RefusedCommand,
                         testing::Values(RefusalRow{"OtherClass", "00B0000000", "6E00"},
                                         RefusalRow{"OtherInstruction", "2099000000", "6D00"},
                                         RefusalRow{"CutHeader", "2011", "6700"},
                                         RefusalRow{"CutData", "201201000201", "6700"},
                                         RefusalRow{"ResetOfSlot2", "20110200", "6A00"},
                                         RefusalRow{"RequestForSlot2", "201202000101", "6A00"},
                                         RefusalRow{"EjectFromSlot2", "201502000100", "6A00"},
                                         RefusalRow{"StatusOfAUnit", "2013018000", "6A00"},
                                         RefusalRow{"OtherStatusObject", "2013008200", "6A00"},
                                         RefusalRow{"OtherUsbQuery", "2071000200", "6A00"}),
                         test::RowName<RefusalRow>);

}  // namespace
}  // namespace ctapi
