#include "simulator/simulated_practice.h"

#include <array>
#include <gtest/gtest.h>

#include "simulator/hex.h"

namespace ctapi {
namespace {

using test::PrintTo;

constexpr std::uint16_t Ctn = 1;
constexpr const char* ResetCt = "2011000000";
constexpr const char* GetStatusUnits = "2013008100";

SimulatedPort WithTerminal(const char* family = "gamma") {
  SimulatedPort port;
  port.Terminal.emplace(ProfileOf(family).value());
  return port;
}

struct Exchange {
  int Code;
  std::string Response;

  bool operator==(const Exchange&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Exchange& exchange) {
  return stream << exchange.Code << ' ' << exchange.Response;
}

Exchange Send(SimulatedPractice& practice, const char* command, std::size_t room = 4098) {
  const Bytes bytes = *BytesFromHex(command);
  Bytes response(room);
  std::uint8_t dad = !bytes.empty() && bytes.front() == 0x20 ? 1 : 0;
  std::uint8_t sad = 2;
  std::uint16_t length = 0xFFFF;
  const int code = practice.Data(Ctn, dad, sad, bytes, response, length);
  return {code, test::ToHex(ByteView(response).first(length))};
}

SimulatedPractice Open(SimulatedPort port, std::uint16_t pn = 1) {
  SimulatedPractice practice;
  practice.Attach(pn, std::move(port));
  EXPECT_EQ(practice.Init(Ctn, pn), 0);
  return practice;
}

struct InitRow {
  const char* Name;
  std::uint16_t Pn;
  SimulatedPort Port;
  int Expected;
};

SimulatedPort WithLine(SerialLine::State state) {
  SimulatedPort port = WithTerminal();
  port.Line = SerialLine{.Port = state};
  return port;
}

SimulatedPort WithInitCode(SimulatedPort port, std::int8_t code) {
  port.InitCode = code;
  return port;
}

class PracticeInit : public testing::TestWithParam<InitRow> {};

TEST_P(PracticeInit, TellsWhatIsOnThePort) {
  const InitRow& row = GetParam();
  SimulatedPractice practice;
  practice.Attach(row.Pn, row.Port);
  EXPECT_EQ(practice.Init(Ctn, row.Pn), row.Expected);
  EXPECT_EQ(practice.OpenLinks(), row.Expected == 0 ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PracticeInit,
    testing::Values(InitRow{"Terminal", 1, WithTerminal(), 0},
                    InitRow{"UsbTerminal", 8192, WithTerminal(), 0},
                    InitRow{"NothingOnTheLine", 256, {}, -10},
                    InitRow{"NothingOnUsb", 8447, {}, -1},
                    InitRow{"AbsentPort", 1, WithLine(SerialLine::State::Absent), -1},
                    InitRow{"PortInUse", 1, WithLine(SerialLine::State::InUse), -127},
                    InitRow{"FailingPort", 1, WithLine(SerialLine::State::Failing), -127},
                    InitRow{"CodeInPlaceOfATerminal", 1, WithInitCode(WithTerminal(), -128), -128},
                    InitRow{"CodeOnAnEmptyPort", 1, WithInitCode({}, -8), -8},
                    InitRow{"SuccessOnAnEmptyPort", 1, WithInitCode({}, 0), 0}),
    test::RowName<InitRow>);

TEST(SimulatedPractice, RefusesAPortThatIsNotAttached) {
  SimulatedPractice practice;
  practice.Attach(1, WithTerminal());
  EXPECT_EQ(practice.Init(Ctn, 2), -1);
}

TEST(SimulatedPractice, RefusesEverythingBeforeInit) {
  SimulatedPractice practice;
  practice.Attach(1, WithTerminal());
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{-1, ""}));
  std::int32_t baud = 77;
  EXPECT_EQ(practice.GetBaudrate(Ctn, baud), -1);
  EXPECT_EQ(baud, 77);
  EXPECT_EQ(practice.Close(Ctn), -1);
}

TEST(SimulatedPractice, ALinkIsOpenedOnceAndClosedOnce) {
  SimulatedPractice practice = Open(WithTerminal());
  practice.Attach(2, WithTerminal());
  EXPECT_EQ(practice.Init(Ctn, 2), -1);
  EXPECT_EQ(practice.Init(7, 1), -127);
  EXPECT_EQ(practice.Init(7, 2), 0);
  EXPECT_EQ(practice.Close(Ctn), 0);
  EXPECT_EQ(practice.Close(Ctn), -1);
  EXPECT_EQ(practice.Init(Ctn, 1), 0);
}

TEST(SimulatedPractice, NamesTheUnitThatAnswered) {
  SimulatedPractice practice = Open(WithTerminal());
  std::array<std::uint8_t, 16> response{};
  std::uint16_t length = 0;
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  EXPECT_EQ(practice.Data(Ctn, dad, sad, *BytesFromHex(ResetCt), response, length), 0);
  EXPECT_EQ(dad, 2);
  EXPECT_EQ(sad, 1);
  dad = 0;
  sad = 2;
  EXPECT_EQ(practice.Data(Ctn, dad, sad, *BytesFromHex("00B0000000"), response, length), 0);
  EXPECT_EQ(dad, 2);
  EXPECT_EQ(sad, 0);
}

struct AddressRow {
  const char* Name;
  std::uint8_t Dad;
  std::uint8_t Sad;
  const char* Command;
};

class WrongCall : public testing::TestWithParam<AddressRow> {};

TEST_P(WrongCall, IsRefused) {
  SimulatedPractice practice = Open(WithTerminal());
  std::array<std::uint8_t, 16> response{};
  std::uint16_t length = 99;
  std::uint8_t dad = GetParam().Dad;
  std::uint8_t sad = GetParam().Sad;
  EXPECT_EQ(practice.Data(Ctn, dad, sad, *BytesFromHex(GetParam().Command), response, length), -1);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(dad, GetParam().Dad);
}

INSTANTIATE_TEST_SUITE_P(Rows, WrongCall,
                         testing::Values(AddressRow{"NoCommand", 1, 2, ""},
                                         AddressRow{"SecondSlot", 2, 2, ResetCt},
                                         AddressRow{"UnknownUnit", 9, 2, ResetCt},
                                         AddressRow{"NotFromTheHost", 1, 1, ResetCt}),
                         test::RowName<AddressRow>);

TEST(SimulatedPractice, ReportsABufferThatIsTooSmall) {
  SimulatedPractice practice = Open(WithTerminal());
  EXPECT_EQ(Send(practice, GetStatusUnits, 5), (Exchange{0, "8101019000"}));
  EXPECT_EQ(Send(practice, GetStatusUnits, 4), (Exchange{-11, ""}));
  EXPECT_EQ(Send(practice, GetStatusUnits, 0), (Exchange{-11, ""}));
}

TEST(SimulatedPractice, TellsTheBaudRate) {
  SimulatedPort port = WithTerminal();
  port.Baud = 57600;
  SimulatedPractice practice = Open(port);
  std::int32_t baud = -1;
  EXPECT_EQ(practice.GetBaudrate(Ctn, baud), 0);
  EXPECT_EQ(baud, 57600);
}

TEST(SimulatedPractice, AUsbDeviceHasNoBaudRate) {
  SimulatedPractice practice = Open(WithTerminal(), 8192);
  std::int32_t baud = -1;
  EXPECT_EQ(practice.GetBaudrate(Ctn, baud), -1);
  EXPECT_EQ(baud, -1);
}

TEST(SimulatedPractice, FailsToTellTheBaudRateByOrder) {
  SimulatedPort port = WithTerminal();
  port.BaudCode = code::TerminalError;
  SimulatedPractice practice = Open(port);
  std::int32_t baud = -1;
  EXPECT_EQ(practice.GetBaudrate(Ctn, baud), -8);
  EXPECT_EQ(baud, -1);
}

TEST(SimulatedPractice, AFailedCloseEndsTheLinkAllTheSame) {
  SimulatedPort port = WithTerminal();
  port.CloseCode = code::TerminalError;
  SimulatedPractice practice = Open(port);
  EXPECT_EQ(practice.Close(Ctn), -8);
  EXPECT_EQ(practice.OpenLinks(), 0u);
  EXPECT_EQ(practice.Init(Ctn, 1), 0);
}

TEST(SimulatedPractice, TerminalsAreExchangedWhileALinkIsOpen) {
  SimulatedPractice practice = Open(WithTerminal("gamma"));
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{0, "9000"}));
  practice.Attach(1, WithTerminal("vedraF"));
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{0, "9500"}));
  practice.Attach(1, {});
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{-10, ""}));
  practice.Detach(1);
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{-10, ""}));
  std::int32_t baud = 0;
  EXPECT_EQ(practice.GetBaudrate(Ctn, baud), -10);
  EXPECT_EQ(practice.Close(Ctn), 0);
  EXPECT_EQ(practice.AttachedPorts(), std::vector<std::uint16_t>{});
}

TEST(SimulatedPractice, TerminalsAreReachedByPort) {
  SimulatedPractice practice;
  practice.Attach(1, {});
  practice.Attach(8192, WithTerminal("vedraF"));
  EXPECT_EQ(practice.TerminalAt(1), nullptr);
  EXPECT_EQ(practice.TerminalAt(2), nullptr);
  ASSERT_NE(practice.TerminalAt(8192), nullptr);
  EXPECT_TRUE(practice.TerminalAt(8192)->Profile().IsMobile());
  EXPECT_EQ(practice.AttachedPorts(), (std::vector<std::uint16_t>{1, 8192}));
}

TEST(SimulatedPractice, DescribesItsSerialLines) {
  SimulatedPractice practice;
  SimulatedPort fast = WithTerminal();
  fast.Baud = 115200;
  practice.Attach(1, fast);
  practice.Attach(2, {});
  practice.Attach(8192, WithTerminal());

  const SerialLine line = practice.SerialLineAt(1);
  EXPECT_EQ(line.Port, SerialLine::State::Present);
  EXPECT_TRUE(line.Signal);
  EXPECT_EQ(line.Answer, SerialLine::Probe::Right);
  EXPECT_EQ(line.Baud, 115200);

  EXPECT_EQ(practice.SerialLineAt(2).Port, SerialLine::State::Present);
  EXPECT_FALSE(practice.SerialLineAt(2).Signal);
  EXPECT_EQ(practice.SerialLineAt(2).Answer, SerialLine::Probe::Silent);
  EXPECT_EQ(practice.SerialLineAt(3).Port, SerialLine::State::Absent);
  EXPECT_EQ(practice.SerialLineAt(8192).Port, SerialLine::State::Absent);
}

SimulatedPractice WithFault(ScriptedFault fault) {
  SimulatedPort port = WithTerminal("vedraF");
  port.Terminal->Store(KvkCard({0x60, 0x00}));
  port.Faults.push_back(std::move(fault));
  return Open(port);
}

TEST(ScriptedFault, HitsEveryExchange) {
  SimulatedPractice practice = WithFault({.Exchange = 0, .Result = std::int8_t{-8}});
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{-8, ""}));
  EXPECT_EQ(Send(practice, "00B0000000"), (Exchange{-8, ""}));
}

TEST(ScriptedFault, HitsTheNthExchangeOnly) {
  SimulatedPractice practice = WithFault({.Exchange = 2, .Result = std::int8_t{-10}});
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{0, "9500"}));
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{-10, ""}));
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{0, "9500"}));
}

TEST(ScriptedFault, CountsCommandsWithItsPrefix) {
  SimulatedPractice practice =
      WithFault({.CommandPrefix = {0x20, 0x12}, .Exchange = 2, .Result = std::int8_t{-1}});
  EXPECT_EQ(Send(practice, ResetCt).Code, 0);
  EXPECT_EQ(Send(practice, "201201000101").Code, 0);
  EXPECT_EQ(Send(practice, "20").Code, 0);
  EXPECT_EQ(Send(practice, ResetCt).Code, 0);
  EXPECT_EQ(Send(practice, "201201000101").Code, -1);
  EXPECT_EQ(Send(practice, "201201000101").Code, 0);
}

TEST(ScriptedFault, CountsOverSeveralLinks) {
  SimulatedPractice practice = WithFault({.Exchange = 2, .Result = std::int8_t{-8}});
  EXPECT_EQ(Send(practice, ResetCt).Code, 0);
  ASSERT_EQ(practice.Close(Ctn), 0);
  ASSERT_EQ(practice.Init(Ctn, 1), 0);
  EXPECT_EQ(Send(practice, ResetCt).Code, -8);
}

struct ResponseRow {
  const char* Name;
  Bytes Response;
};

class FaultyResponse : public testing::TestWithParam<ResponseRow> {};

TEST_P(FaultyResponse, StandsInPlaceOfTheTerminals) {
  SimulatedPractice practice = WithFault({.Exchange = 1, .Result = GetParam().Response});
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{0, test::ToHex(GetParam().Response)}));
}

INSTANTIATE_TEST_SUITE_P(Rows, FaultyResponse,
                         testing::Values(ResponseRow{"Nothing", {}}, ResponseRow{"OneByte", {0x90}},
                                         ResponseRow{"StatusWord", {0x6F, 0x00}},
                                         ResponseRow{"Garbage", GarbageOf(300, 1)}),
                         test::RowName<ResponseRow>);

TEST(ScriptedFault, KeepsTheCommandFromTheTerminal) {
  SimulatedPractice practice =
      WithFault({.CommandPrefix = {0x00, 0x0E}, .Exchange = 0, .Result = std::int8_t{-10}});
  ASSERT_EQ(Send(practice, "201201000101").Response, "9000");
  EXPECT_EQ(Send(practice, "000E0000").Code, -10);
  EXPECT_EQ(practice.TerminalAt(1)->StoredRecords(), 1u);
}

TEST(ScriptedFault, MayLoseTheAnswerOnly) {
  SimulatedPractice practice = WithFault({.CommandPrefix = {0x00, 0x0E},
                                          .Exchange = 0,
                                          .Result = std::int8_t{-10},
                                          .CarriedOut = true});
  ASSERT_EQ(Send(practice, "201201000101").Response, "9000");
  EXPECT_EQ(Send(practice, "000E0000").Code, -10);
  EXPECT_EQ(practice.TerminalAt(1)->StoredRecords(), 0u);
}

TEST(ScriptedFault, OverlappingFaultsEachCount) {
  SimulatedPort port = WithTerminal();
  port.Faults.push_back({.Exchange = 1, .Result = std::int8_t{-8}});
  port.Faults.push_back({.CommandPrefix = {0x20}, .Exchange = 2, .Result = std::int8_t{-10}});
  SimulatedPractice practice = Open(port);
  EXPECT_EQ(Send(practice, ResetCt).Code, -8);
  EXPECT_EQ(Send(practice, ResetCt).Code, -10);
  EXPECT_EQ(Send(practice, ResetCt).Code, 0);
}

TEST(ScriptedFault, AnswersForAnEmptyPort) {
  SimulatedPort port;
  port.InitCode = code::Success;
  port.Faults.push_back({.Exchange = 0, .Result = Bytes{0x90, 0x00}});
  SimulatedPractice practice = Open(port);
  EXPECT_EQ(Send(practice, ResetCt), (Exchange{0, "9000"}));
}

TEST(Garbage, IsTheSameForTheSameSeed) {
  EXPECT_EQ(GarbageOf(16, 5), GarbageOf(16, 5));
  EXPECT_NE(GarbageOf(16, 5), GarbageOf(16, 6));
  EXPECT_TRUE(GarbageOf(0, 5).empty());
}

TEST(SimulatedPractice, TakesItsTime) {
  SimulatedPort port = WithTerminal();
  port.Delay = std::chrono::milliseconds(20);
  SimulatedPractice practice = Open(port);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Send(practice, ResetCt).Code, 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

}  // namespace
}  // namespace ctapi
