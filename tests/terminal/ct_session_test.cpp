#include "terminal/ct_session.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "terminal/command_catalogue.h"

namespace kartocheck::test {
namespace {

using LampChange = std::pair<Lamp, LampState>;

TEST(CtOpenTest, OpensTheLinkAndWritesTheBaudRateOfTheSlot) {
  Dialogue dialogue("open 1\nbaud 115200");
  Link link(dialogue);
  EXPECT_FALSE(link.session.IsOpen());
  EXPECT_EQ(link.session.CtOpen(Port(1)), 0);
  EXPECT_TRUE(link.session.IsOpen());
  EXPECT_EQ(link.session.Pn(), 1);
  EXPECT_EQ(link.ports[1].BaudText, u"115200  ");
}

TEST(CtOpenTest, APortFromFiveUpwardsUsesSlotFive) {
  for (const int pn : {5, 7, 256, 8193}) {
    SCOPED_TRACE(pn);
    FakeApi api;
    api.baud = [](auto, auto& baud) -> std::int8_t { return baud = 57600, 0; };
    Link link(api);
    EXPECT_EQ(link.session.CtOpen(Port(pn)), 0);
    for (int slot = 1; slot <= 4; ++slot) EXPECT_TRUE(link.ports[slot].BaudText.IsBlank());
    EXPECT_EQ(link.ports[5].BaudText, u"57600   ");
  }
}

TEST(CtOpenTest, ALaterFurtherPortOverwritesTheBaudRateOfSlotFive) {
  Dialogue dialogue("open 5\nbaud 9600\nclose\nopen 7\nbaud 38400");
  Link link(dialogue);
  EXPECT_EQ(link.session.CtOpen(Port(5)), 0);
  EXPECT_EQ(link.session.CtClose(), 0);
  EXPECT_EQ(link.session.CtOpen(Port(7)), 0);
  EXPECT_EQ(link.ports[5].BaudText, u"38400   ");
  EXPECT_EQ(link.session.Pn(), 7);
}

TEST(CtOpenTest, AFailingBaudRateQueryLeavesTheTextEmptyAndTheOpenGood) {
  FakeApi api;
  api.baud = [](auto, auto& baud) -> std::int8_t { return baud = 4711, -8; };
  Link link(api);
  link.ports[2].BaudText = u"19200";
  EXPECT_EQ(link.session.CtOpen(Port(2)), 0);
  EXPECT_TRUE(link.ports[2].BaudText.IsBlank());
  EXPECT_TRUE(link.session.IsOpen());
}

TEST(CtOpenTest, TheBaudRateIsAskedForWithMinusOneToStartWith) {
  FakeApi api;
  api.baud = [](auto, auto& baud) -> std::int8_t {
    EXPECT_EQ(baud, -1);
    return 0;
  };
  Link link(api);
  EXPECT_EQ(link.session.CtOpen(Port(1)), 0);
  EXPECT_EQ(link.ports[1].BaudText, u"-1      ");
}

TEST(CtOpenTest, ABaudRateOfMoreThanEightDigitsIsCut) {
  FakeApi api;
  api.baud = [](auto, auto& baud) -> std::int8_t {
    return baud = std::numeric_limits<std::int32_t>::max(), 0;
  };
  Link link(api);
  EXPECT_EQ(link.session.CtOpen(Port(1)), 0);
  EXPECT_EQ(link.ports[1].BaudText, u"21474836");
}

TEST(CtOpenTest, AFailureClearsTheBaudRateAndLeavesLinkAndLampsAsTheyWere) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t { return -10; };
  api.baud = [](auto, auto&) -> std::int8_t {
    ADD_FAILURE() << "asked for the baud rate of a link that is not open";
    return 0;
  };
  Link link(api);
  link.ports[3].BaudText = u"9600";
  EXPECT_EQ(link.session.CtOpen(Port(3)), -10);
  EXPECT_FALSE(link.session.IsOpen());
  EXPECT_TRUE(link.display.lamps.empty());
  EXPECT_TRUE(link.ports[3].BaudText.IsBlank());
  EXPECT_EQ(link.eventLoop.yields, 1);
}

TEST(CtOpenTest, EveryPortNumberReachesTheLibraryWithTerminalNumberOne) {
  for (const int pn : {1, 4, 5, 256, 8192, 8447, 65535}) {
    FakeApi api;
    api.init = [pn](std::uint16_t ctn, std::uint16_t seen) -> std::int8_t {
      EXPECT_EQ(ctn, 1);
      EXPECT_EQ(seen, pn);
      return 0;
    };
    Link link(api);
    EXPECT_EQ(link.session.CtOpen(Port(pn)), 0);
  }
}

TEST(CtOpenTest, EverySignedCodeIsReturnedUnchanged) {
  for (int code = -128; code <= 127; ++code) {
    FakeApi api;
    api.init = [code](auto, auto) { return static_cast<std::int8_t>(code); };
    Link link(api);
    EXPECT_EQ(link.session.CtOpen(Port(1)), code);
    EXPECT_EQ(link.session.IsOpen(), code == 0);
  }
}

TEST(CtCloseTest, TurnsTheLampsOffCardLampFirst) {
  Dialogue dialogue("open 1\nclose");
  Link link(dialogue);
  ASSERT_EQ(link.session.CtOpen(Port(1)), 0);
  link.display.lamps.clear();
  EXPECT_EQ(link.session.CtClose(), 0);
  EXPECT_FALSE(link.session.IsOpen());
  EXPECT_EQ(link.display.lamps, (std::vector<LampChange>{{Lamp::Card, LampState::Off},
                                                         {Lamp::Terminal, LampState::Off}}));
}

TEST(CtCloseTest, AFailedCloseClosesTheLinkAllTheSame) {
  Dialogue dialogue("open 1\nclose -> -127");
  Link link(dialogue);
  ASSERT_EQ(link.session.CtOpen(Port(1)), 0);
  link.display.lamps.clear();
  EXPECT_EQ(link.session.CtClose(), -127);
  EXPECT_FALSE(link.session.IsOpen());
  EXPECT_EQ(link.display.lamps.size(), 2U);
}

TEST(CtExchangeTest, SendsTheBytesOfTheCommandText) {
  Dialogue dialogue(R"(
    > 20 13 00 46 00
    < 46 00 90 00
  )");
  Link link(dialogue);
  const CtAnswer answer = link.session.CtExchange(u"2013004600", Unit::Terminal);
  EXPECT_EQ(answer.code, 0);
  EXPECT_TRUE(answer.Succeeded());
  EXPECT_EQ(answer.response, QByteArray::fromHex("46009000"));
  EXPECT_EQ(answer.StatusWord(), sw::Ok);
  EXPECT_EQ(answer.Data().toByteArray(), QByteArray::fromHex("4600"));
  EXPECT_EQ(answer.HexText(), u"46009000");
  EXPECT_EQ(answer.HexData(), u"4600");
}

TEST(CtExchangeTest, ACommandOfBytesIsSentAsItIs) {
  Dialogue dialogue("> 00 B0 0A FF 00\n< 01 62 82");
  Link link(dialogue);
  constexpr std::array<std::uint8_t, 5> Command{0x00, 0xB0, 0x0A, 0xFF, 0x00};
  const CtAnswer answer = link.session.CtExchange(Command, Unit::Card);
  EXPECT_TRUE(answer.Is(sw::EndOfFile));
  EXPECT_EQ(answer.HexData(), u"01");
}

// Bit 8 of a byte is no sign: every word comes back as it was sent.
TEST(CtExchangeTest, EveryStatusWordIsTheLastTwoBytes) {
  for (int value = 0; value <= 0xFFFF; value += 0x3F) {
    CtAnswer answer;
    answer.response = QByteArray(1, '\x61');
    answer.response += static_cast<char>(value >> 8);
    answer.response += static_cast<char>(value & 0xFF);
    ASSERT_EQ(answer.StatusWord(), ctapi::StatusWord(static_cast<std::uint16_t>(value)));
    ASSERT_EQ(answer.Data().size(), 1);
  }
}

TEST(CtExchangeTest, EveryCommandOfTheCatalogueHasItsNumberOfBytes) {
  struct Row {
    QStringView command;
    std::size_t bytes;
  };
  for (const Row& row :
       std::vector<Row>{{CommandCatalogue::ResetIcc1, 4},         // without Le
                        {CommandCatalogue::ResetCt, 5},           // with Le
                        {CommandCatalogue::RequestIcc1, 6},       // one data byte
                        {CommandCatalogue::SelectEfStatusVd, 7},  // a file identifier
                        {CommandCatalogue::SelectKvk, 11}}) {     // an application identifier
    FakeApi api;
    std::size_t bytes = 0;
    api.data = [&](auto&, auto&, auto command, auto, auto&) -> std::int8_t {
      bytes = command.size();
      return -1;
    };
    Link link(api);
    EXPECT_EQ(link.session.CtExchange(row.command, Unit::Card).code, -1);
    EXPECT_EQ(bytes, row.bytes);
  }
}

TEST(CtExchangeTest, EveryByteOfAResponseIsTwoUpperCaseDigits) {
  Dialogue dialogue("> 00 B0 00 00 00\n< 0A F0 00 FF AB 90 00");
  Link link(dialogue);
  EXPECT_EQ(link.session.CtExchange(u"00B0000000", Unit::Card).HexText(), u"0AF000FFAB9000");
}

TEST(CtExchangeTest, AStatusWordAloneHasNoData) {
  Dialogue dialogue("> 00 0E 00 00\n< 6D 00");
  Link link(dialogue);
  const CtAnswer answer = link.session.CtExchange(u"000E0000", Unit::Card);
  EXPECT_EQ(answer.code, 0);
  EXPECT_TRUE(answer.Is(sw::UnknownInstruction));
  EXPECT_FALSE(answer.Is(sw::UnknownClass));
  EXPECT_TRUE(answer.Data().isEmpty());
}

TEST(CtExchangeTest, FewerBytesThanAStatusWordAreAMemoryError) {
  for (const int length : {0, 1}) {
    SCOPED_TRACE(length);
    FakeApi api;
    api.data = [length](auto&, auto&, auto, auto response, auto& responseLength) -> std::int8_t {
      response[0] = 0x90;
      responseLength = static_cast<std::uint16_t>(length);
      return 0;
    };
    Link link(api);
    const CtAnswer answer = link.session.CtExchange(u"2011000000", Unit::Terminal);
    EXPECT_EQ(answer.code, -11);
    EXPECT_EQ(answer.response, QByteArray());
    EXPECT_EQ(answer.StatusWord(), std::nullopt);
    EXPECT_TRUE(answer.Data().isEmpty());
    EXPECT_EQ(answer.HexData(), u"");
  }
}

TEST(CtExchangeTest, AShortResponseOfAFailedCallKeepsTheCode) {
  FakeApi api;
  api.data = [](auto&, auto&, auto, auto, auto& responseLength) -> std::int8_t {
    responseLength = 1;
    return -8;
  };
  Link link(api);
  EXPECT_EQ(link.session.CtExchange(u"2011000000", Unit::Terminal).code, -8);
}

TEST(CtExchangeTest, AFailedCallHasNoResponseWhateverTheBufferHolds) {
  Dialogue dialogue("> 20 11 00 00 00\n< 95 00 -> -10");
  Link link(dialogue);
  const CtAnswer answer = link.session.CtExchange(u"2011000000", Unit::Terminal);
  EXPECT_EQ(answer.code, -10);
  EXPECT_EQ(answer.response, QByteArray());
}

TEST(CtExchangeTest, TheWholeBufferOf4098BytesMayBeUsed) {
  FakeApi api;
  api.data = [](auto&, auto&, auto, auto response, auto& responseLength) -> std::int8_t {
    EXPECT_EQ(response.size(), 4098U);
    EXPECT_EQ(responseLength, 4098);
    std::fill(response.begin(), response.end(), std::uint8_t{0x3C});
    return 0;
  };
  Link link(api);
  const CtAnswer answer = link.session.CtExchange(u"00B0000000", Unit::Card);
  EXPECT_EQ(answer.code, 0);
  EXPECT_EQ(answer.response, QByteArray(4098, '\x3C'));
}

TEST(CtExchangeTest, AResponseThatWasNotWrittenHoldsNothingOfTheOneBefore) {
  FakeApi api;
  Link link(api);
  api.data = [](auto&, auto&, auto, auto response, auto&) -> std::int8_t {
    std::fill(response.begin(), response.end(), std::uint8_t{0x3C});
    return 0;
  };
  EXPECT_EQ(link.session.CtExchange(u"00B0000000", Unit::Card).response.size(), 4098);
  api.data = [](auto&, auto&, auto, auto, auto&) -> std::int8_t { return 0; };
  const CtAnswer answer = link.session.CtExchange(u"00B0000000", Unit::Card);
  EXPECT_EQ(answer.response.size(), 4098);
  EXPECT_FALSE(answer.response.contains('\x3C'));
}

TEST(CtExchangeTest, TheAddressesAreTheUnitAndTheHost) {
  for (const Unit unit : {Unit::Card, Unit::Terminal}) {
    FakeApi api;
    int dadSeen = -1;
    int sadSeen = -1;
    api.data = [&](auto& dad, auto& sad, auto, auto, auto&) -> std::int8_t {
      dadSeen = dad;
      sadSeen = sad;
      return -1;
    };
    Link link(api);
    (void)link.session.CtExchange(u"2011000000", unit);
    EXPECT_EQ(dadSeen, unit == Unit::Terminal ? 1 : 0);
    EXPECT_EQ(sadSeen, 2);
  }
}

struct LampRow {
  const char* sentence;
  Unit unit;
  std::uint8_t answering;  // sad on return
  std::int8_t code;
  std::vector<LampChange> lamps;

  friend std::ostream& operator<<(std::ostream& out, const LampRow& row) {
    return out << row.sentence;
  }
};

class ExchangeLampTest : public testing::TestWithParam<LampRow> {};

TEST_P(ExchangeLampTest, Order) {
  const LampRow& row = GetParam();
  FakeApi api;
  Link link(api);
  std::vector<std::string> order;
  link.eventLoop.onYield = [&] { order.emplace_back("yield"); };
  link.display.onLamp = [&](auto, auto) { order.emplace_back("lamp"); };
  api.data = [&](auto& dad, auto& sad, auto, auto, auto& length) -> std::int8_t {
    order.emplace_back("call");
    dad = 2;
    sad = row.answering;
    length = 2;
    return row.code;
  };
  EXPECT_EQ(link.session.CtExchange(u"2011000000", row.unit).code, row.code);
  EXPECT_EQ(link.display.lamps, row.lamps);
  EXPECT_EQ(order, (std::vector<std::string>{"lamp", "yield", "call", "lamp"}));
}

INSTANTIATE_TEST_SUITE_P(
    CtSession, ExchangeLampTest,
    testing::ValuesIn(std::vector<LampRow>{
        {"a command to the terminal, answered by the terminal",
         Unit::Terminal,
         1,
         0,
         {{Lamp::Terminal, LampState::Waiting}, {Lamp::Terminal, LampState::Answered}}},
        {"a command to the card, answered by the card",
         Unit::Card,
         0,
         0,
         {{Lamp::Card, LampState::Waiting}, {Lamp::Card, LampState::Answered}}},
        {"a command to the card, answered by the terminal",
         Unit::Card,
         1,
         0,
         {{Lamp::Card, LampState::Waiting}, {Lamp::Terminal, LampState::Answered}}},
        {"a command to the terminal, answered by the card",
         Unit::Terminal,
         0,
         0,
         {{Lamp::Terminal, LampState::Waiting}, {Lamp::Card, LampState::Answered}}},
        {"an answer of another unit counts as the card's",
         Unit::Terminal,
         7,
         0,
         {{Lamp::Terminal, LampState::Waiting}, {Lamp::Card, LampState::Answered}}},
        {"a failed call",
         Unit::Terminal,
         1,
         -10,
         {{Lamp::Terminal, LampState::Waiting}, {Lamp::Terminal, LampState::Answered}}},
        {"a failed call that left the host as source",
         Unit::Card,
         2,
         -1,
         {{Lamp::Card, LampState::Waiting}, {Lamp::Card, LampState::Answered}}},
    }),
    SentenceName());

TEST(CtOpenTest, YieldsBeforeTheCallAndLightsTheLampsAfterIt) {
  FakeApi api;
  Link link(api);
  std::vector<std::string> order;
  link.eventLoop.onYield = [&] { order.emplace_back("yield"); };
  link.display.onLamp = [&](Lamp lamp, LampState state) {
    EXPECT_EQ(state, LampState::Answered);
    order.emplace_back(lamp == Lamp::Card ? "card lamp" : "terminal lamp");
  };
  api.init = [&](auto, auto) -> std::int8_t { return order.emplace_back("init"), 0; };
  api.baud = [&](auto, auto&) -> std::int8_t { return order.emplace_back("baud rate"), 0; };
  ASSERT_EQ(link.session.CtOpen(Port(1)), 0);
  EXPECT_EQ(order,
            (std::vector<std::string>{"yield", "init", "card lamp", "terminal lamp", "baud rate"}));
}

TEST(CtSessionTest, ExchangesDoNotLookAtTheOpenFlag) {
  Dialogue dialogue("> 20 11 00 00 00\n< -> -127\nclose -> -1");
  Link link(dialogue);
  EXPECT_EQ(link.session.CtExchange(u"2011000000", Unit::Terminal).code, -127);
  EXPECT_EQ(link.session.CtClose(), -1);
}

}  // namespace
}  // namespace kartocheck::test
