#include "host/block_protocol.h"

#include "host/repeatable_commands.h"
#include "host/virtual_line.h"

namespace ctapi::host {
namespace {

using ctapi::test::BlockTerminal;
using ctapi::test::PrintTo;
using ctapi::test::RowName;
using ctapi::test::ToHex;
using std::chrono::milliseconds;
using Outcome = BlockProtocol::Outcome;

constexpr const char* ResetCt = "20 11 00 00 00";
constexpr const char* GetStatus = "20 13 00 80 00";
constexpr const char* Resynch = "12 C0 00 D2";
constexpr const char* ResynchDone = "21 E0 00 C1";
constexpr const char* Announce = "12 C1 01 FE 2C";
constexpr const char* Announced = "21 E1 01 FE 3F";

Bytes FromHex(const char* hex) {
  return *BytesFromHex(hex);
}

std::string CodeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::Answered:
      return "answered";
    case Outcome::Broken:
      return "broken";
    case Outcome::TooLong:
      return "too long";
    case Outcome::Silent:
      return "silent";
  }
  return "?";
}

// The answer, or how the exchange failed.
std::string Ask(BlockProtocol& protocol, Unit unit, const Bytes& command) {
  Bytes response{0xEE};
  const Outcome outcome = protocol.Exchange(unit, command, response);
  if (outcome != Outcome::Answered) {
    EXPECT_TRUE(response.empty());
  }
  return outcome == Outcome::Answered ? ToHex(response) : CodeName(outcome);
}

std::string Ask(BlockProtocol& protocol, Unit unit, const std::string& command) {
  return Ask(protocol, unit, FromHex(command.c_str()));
}

// A command of 40 bytes, and its two blocks.
const std::string LongCommand = "2011" + std::string(76, '0');
const std::string FirstPiece = "12 20 20 2011" + std::string(60, '0') + "23";
const std::string SecondPiece = "12 40 08 " + std::string(16, '0') + "5A";

struct DialogueRow {
  const char* Name;
  Unit With;
  std::string Command;
  test::ScriptedLine::Script Blocks;
  const char* Result;
};

class BlockDialogue : public testing::TestWithParam<DialogueRow> {};

TEST_P(BlockDialogue, GoesAsWritten) {
  test::ScriptedLine line(GetParam().Blocks);
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, GetParam().With, GetParam().Command), GetParam().Result);
}

constexpr const char* Command = "12 00 05 20 13 00 80 00 A4";
constexpr const char* OtherCommand = "12 40 05 20 13 00 80 00 E4";
constexpr const char* Answer = "21 00 02 90 00 B3";
constexpr const char* AskCheck = "12 81 00 93";
constexpr const char* AskOther = "12 82 00 90";

const std::vector<DialogueRow> Recoveries{
    {"Undisturbed", Unit::Terminal, GetStatus, {{Command, Answer}}, "9000"},
    {"CardHasItsOwnAddress",
     Unit::Card,
     "00 B0 82 00 00",
     {{"02 00 05 00 B0 82 00 00 35", "20 00 02 90 00 B2"}},
     "9000"},
    {"WrongCheckAsksAgain",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 00 02 90 00 B4"}, {AskCheck, Answer}},
     "9000"},
    {"DamagedByteAsksAgain",
     Unit::Terminal,
     GetStatus,
     {{Command, "!21 00 02 90 00 B3"}, {AskCheck, Answer}},
     "9000"},
    {"DamagedByteAlone", Unit::Terminal, GetStatus, {{Command, "!"}, {AskCheck, Answer}}, "9000"},
    {"SilenceAsksAgain", Unit::Terminal, GetStatus, {{Command, ""}, {AskOther, Answer}}, "9000"},
    {"CutBlockAsksAgain",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 00 02 90"}, {AskOther, Answer}},
     "9000"},
    {"WrongSenderAsksAgain",
     Unit::Terminal,
     GetStatus,
     {{Command, "20 00 02 90 00 B2"}, {AskOther, Answer}},
     "9000"},
    {"GarbageBeforeABlock",
     Unit::Terminal,
     GetStatus,
     {{Command, "FF 00|21 00 02 90 00 B3"}, {AskOther, Answer}},
     "9000"},
    {"LateBlocksAreLetPass",
     Unit::Terminal,
     GetStatus,
     {{Command, "20 00 02 90 00 B2|21 40 02 62 00 01|21 00 02 90 00 B3"}},
     "9000"},
    {"AnotherNumberInPlaceOfTheAnswersStartsAnew",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 60 02 62 00 21"},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {Command, Answer}},
     "9000"},
    {"PartsArriveOneByOne", Unit::Terminal, GetStatus, {{Command, "21|00|02|90|00|B3"}}, "9000"},
    {"ReceiptIsRepeatedAsItWas",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 00 02 90 00 B4"}, {AskCheck, ""}, {AskCheck, Answer}},
     "9000"},
    {"LostCommandIsRepeated",
     Unit::Terminal,
     GetStatus,
     {{Command, ""}, {AskOther, "21 80 00 A1"}, {Command, Answer}},
     "9000"},
    {"ReceiptOfTheOtherNumberRepeatsOurs",
     Unit::Terminal,
     GetStatus,
     {{Command, ""}, {AskOther, "21 91 00 B0"}, {AskOther, Answer}},
     "9000"},
    {"ARefusedCommandTakesTheNumberAskedFor",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 92 00 B3"}, {OtherCommand, "21 40 02 90 00 F3"}},
     "9000"},
    {"ARefusalMayNameNoError",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 90 00 B1"}, {OtherCommand, Answer}},
     "9000"},
    {"ARefusedCommandThatComesDamagedIsRepeatedAsItIs",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 92 00 B3"}, {OtherCommand, "21 91 00 B0"}, {OtherCommand, Answer}},
     "9000"},
    {"BehindARefusalNothingIsAskedForAgain",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 92 00 B3"},
      {OtherCommand, ""},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {Command, Answer}},
     "9000"},
    {"RefusalsInARowEnd",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 92 00 B3"},
      {OtherCommand, "21 82 00 A3"},
      {Command, "21 92 00 B3"},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {Command, Answer}},
     "9000"},
    {"ARefusedCommandIsSentAgainWhateverItDoes",
     Unit::Terminal,
     "20 15 01 01 01 01",
     {{"12 00 06 20 15 01 01 01 01 21", "21 92 00 B3"}, {"12 40 06 20 15 01 01 01 01 61", Answer}},
     "9000"},
    {"ARefusedFirstPieceStartsAnew",
     Unit::Terminal,
     LongCommand,
     {{FirstPiece, "21 92 00 B3"},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {FirstPiece, "21 90 00 B1"},
      {SecondPiece, Answer}},
     "9000"},
    {"AReceiptInPlaceOfAnAnswerBehindAChainStartsAnew",
     Unit::Terminal,
     LongCommand,
     {{FirstPiece, "21 90 00 B1"},
      {SecondPiece, "21 80 00 A1"},
      {Resynch, ResynchDone},
      {Announce, Announced}},
     "broken"},
    {"AChainThatWasNeverSentWholeIsSentAgain",
     Unit::Terminal,
     LongCommand,
     {{FirstPiece, ""},
      {AskOther, ""},
      {AskOther, ""},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {FirstPiece, "21 90 00 B1"},
      {SecondPiece, Answer}},
     "9000"},
    {"MoreTimeIsGranted",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C3 01 02 E1"}, {"12 E3 01 02 F2", Answer}},
     "9000"},
    {"DamagedGrantIsRepeated",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C3 01 02 E1"}, {"12 E3 01 02 F2", "21 91 00 B0"}, {"12 E3 01 02 F2", Answer}},
     "9000"},
    {"RepetitionsInARowEnd",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 81 00 A0"},
      {Command, "21 81 00 A0"},
      {Command, "21 81 00 A0"},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {Command, Answer}},
     "9000"},
    {"AGoodBlockEndsARowOfFailures",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 20 01 AA AA"},
      {"12 90 00 82", ""},
      {"12 90 00 82", ""},
      {"12 90 00 82", "21 60 01 BB FB"},
      {"12 80 00 92", ""},
      {"12 80 00 92", ""},
      {"12 80 00 92", Answer}},
     "AABB9000"},
    {"APieceThatArrivesEndsARowOfFailures",
     Unit::Terminal,
     LongCommand,
     {{FirstPiece, ""},
      {AskOther, ""},
      {AskOther, "21 90 00 B1"},
      {SecondPiece, ""},
      {AskOther, ""},
      {AskOther, Answer}},
     "9000"},
    {"DamagedBlockSizeBetweenPiecesIsRepeated",
     Unit::Terminal,
     LongCommand,
     {{FirstPiece, "21 C1 01 40 A1"},
      {"12 E1 01 40 B2", "21 91 00 B0"},
      {"12 E1 01 40 B2", "21 90 00 B1"},
      {SecondPiece, Answer}},
     "9000"},
    {"GrantsEndARowOfFailures",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C3 01 01 E2"},
      {"12 E3 01 01 F1", ""},
      {AskOther, "21 C3 01 01 E2"},
      {"12 E3 01 01 F1", ""},
      {AskOther, "21 C3 01 01 E2"},
      {"12 E3 01 01 F1", ""},
      {AskOther, Answer}},
     "9000"},
    {"SilenceAfterAGrantAsksForTheAnswer",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C3 01 01 E2"}, {"12 E3 01 01 F1", ""}, {AskOther, Answer}},
     "9000"},
    {"BlockSizeOfTheTerminal",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C1 01 40 A1"}, {"12 E1 01 40 B2", Answer}},
     "9000"},
    {"BlockSizeOfZeroIsRefused",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C1 01 00 E1"}, {AskOther, Answer}},
     "9000"},
    {"BlockSizeOf255IsRefused",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C1 01 FF 1E"}, {AskOther, Answer}},
     "9000"},
    {"ResynchOfTheTerminalIsRefused",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C0 00 E1"}, {AskOther, Answer}},
     "9000"},
    {"ResponseWithoutARequestIsRefused",
     Unit::Terminal,
     GetStatus,
     {{Command, ResynchDone}, {AskOther, Answer}},
     "9000"},
    {"OldResponseMeansThatOurBlockIsLost",
     Unit::Terminal,
     GetStatus,
     {{Command, ""}, {AskOther, Announced}, {Command, Answer}},
     "9000"},
    {"AbortEndsWithTheTurnGivenBack",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C2 00 E3"}, {"12 E2 00 F0", "21 90 00 B1"}},
     "broken"},
    {"AbortIsAnsweredAndEnds",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C2 00 E3"}, {"12 E2 00 F0", ""}},
     "broken"},
    {"ARepeatedAbortIsAnsweredAgain",
     Unit::Terminal,
     GetStatus,
     {{Command, "21 C2 00 E3"}, {"12 E2 00 F0", "21 C2 00 E3"}, {"12 E2 00 F0", "21 90 00 B1"}},
     "broken"},
    {"NewStartAndRepetition",
     Unit::Terminal,
     GetStatus,
     {{Command, ""},
      {AskOther, ""},
      {AskOther, ""},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {Command, Answer}},
     "9000"},
    {"NewStartAtTheThirdTry",
     Unit::Terminal,
     GetStatus,
     {{Command, ""},
      {AskOther, ""},
      {AskOther, ""},
      {Resynch, ""},
      {Resynch, "21 80 00 A1"},
      {Resynch, ResynchDone},
      {Announce, ""},
      {Announce, Announced},
      {Command, Answer}},
     "9000"},
    {"NewStartConcernsTheCardToo",
     Unit::Card,
     "00 B0 00 00 00",
     {{"02 00 05 00 B0 00 00 00 B7", ""},
      {Resynch, ResynchDone},
      {"02 C0 00 C2", ""},
      {"02 C0 00 C2", ""},
      {"02 C0 00 C2", ""},
      {Announce, Announced},
      {"02 00 05 00 B0 00 00 00 B7", "20 00 02 90 00 B2"}},
     "9000"},
    {"SilenceForGood",
     Unit::Terminal,
     GetStatus,
     {{Command, ""}, {AskOther, ""}, {AskOther, ""}, {Resynch, ""}, {Resynch, ""}, {Resynch, ""}},
     "silent"},
    {"RepeatedOnlyOnce",
     Unit::Terminal,
     GetStatus,
     {{Command, ""},
      {AskOther, ""},
      {AskOther, ""},
      {Resynch, ResynchDone},
      {Announce, Announced},
      {Command, ""},
      {AskOther, ""},
      {AskOther, ""},
      {Resynch, ResynchDone},
      {Announce, Announced}},
     "broken"},
    {"RequestOfTheTerminalBeforeItsResponse",
     Unit::Terminal,
     GetStatus,
     {{Command, ""},
      {AskOther, ""},
      {AskOther, ""},
      {Resynch, ResynchDone},
      {Announce, "21 C1 01 80 61"},
      {"12 E1 01 80 72", Announced},
      {Command, Answer}},
     "9000"}};

INSTANTIATE_TEST_SUITE_P(Host, BlockDialogue, testing::ValuesIn(Recoveries), RowName<DialogueRow>);

const std::vector<DialogueRow> NeverTwice{{"EraseBinary",
                                           Unit::Card,
                                           "00 0E 00 00",
                                           {{Resynch, ResynchDone},
                                            {"02 C0 00 C2", "20 E0 00 C0"},
                                            {Announce, Announced},
                                            {"02 00 04 00 0E 00 00 08", ""},
                                            {"02 82 00 80", ""},
                                            {"02 82 00 80", ""},
                                            {Resynch, ResynchDone},
                                            {"02 C0 00 C2", "20 E0 00 C0"},
                                            {Announce, Announced}},
                                           "broken"},
                                          {"EjectIcc",
                                           Unit::Terminal,
                                           "20 15 01 01 01 01",
                                           {{"12 00 06 20 15 01 01 01 01 21", ""},
                                            {AskOther, ""},
                                            {AskOther, ""},
                                            {Resynch, ResynchDone},
                                            {Announce, Announced}},
                                           "broken"},
                                          {"ResetCt",
                                           Unit::Terminal,
                                           "20 11 00 00 00",
                                           {{"12 00 05 20 11 00 00 00 26", ""},
                                            {AskOther, ""},
                                            {AskOther, ""},
                                            {Resynch, ResynchDone},
                                            {Announce, Announced}},
                                           "broken"},
                                          {"RequestIcc",
                                           Unit::Terminal,
                                           "20 12 01 00 01 01",
                                           {{"12 00 06 20 12 01 00 01 01 27", ""},
                                            {AskOther, ""},
                                            {AskOther, ""},
                                            {Resynch, ResynchDone},
                                            {Announce, Announced}},
                                           "broken"}};

INSTANTIATE_TEST_SUITE_P(NeverTwice, BlockDialogue, testing::ValuesIn(NeverTwice),
                         RowName<DialogueRow>);

TEST(BlockProtocol, NumbersAlternateForTerminalAndCardApart) {
  test::ScriptedLine line({{Command, Answer},
                           {"02 00 05 00 B0 82 00 00 35", "20 00 02 90 00 B2"},
                           {"12 40 05 20 13 00 80 00 E4", "21 40 02 90 00 F3"},
                           {"02 40 05 00 B0 82 00 00 75", "20 40 02 90 00 F2"},
                           {Command, Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 82 00 00"), "9000");
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 82 00 00"), "9000");
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
}

TEST(BlockProtocol, ChainsACommandInBlocksOf32) {
  const Bytes command(70, 0x11);
  const auto piece = [](std::uint8_t control, std::size_t length) {
    return ToHex(Encode({0x12, control, Bytes(length, 0x11)}));
  };
  test::ScriptedLine line({{piece(0x20, 32), "21 90 00 B1"},
                           {piece(0x60, 32), "21 90 00 B1"},  // lost: it expects number 1 still
                           {piece(0x60, 32), "21 80 00 A1"},
                           {piece(0x00, 6), Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, command), "9000");
}

TEST(BlockProtocol, AnswersInsideAChainAreRefused) {
  const Bytes command(40, 0x11);
  test::ScriptedLine line({{ToHex(Encode({0x12, 0x20, Bytes(32, 0x11)})), Answer},
                           {AskOther, "21 90 00 B1"},
                           {ToHex(Encode({0x12, 0x40, Bytes(8, 0x11)})), Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, command), "9000");
}

TEST(BlockProtocol, AcknowledgesEachBlockOfAChainedAnswer) {
  test::ScriptedLine line({{Command, "21 20 01 AA AA"},
                           {"12 90 00 82", "21 60 01 BB FB"},
                           {"12 80 00 92", "21 90 00 B1"},  // our receipt came damaged
                           {"12 80 00 92", Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "AABB9000");
}

TEST(BlockProtocol, UsesTheBlockSizeThatTheTerminalAsksFor) {
  BlockTerminal terminal([](int, const Bytes& command) { return command; },
                         {.AskForBlockSize = std::uint8_t{100}});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  const Bytes command(150, 0x33);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, command), ToHex(command));
  line.Sent.clear();
  EXPECT_EQ(Ask(protocol, Unit::Terminal, command), ToHex(command));
  EXPECT_EQ(line.Sent.front().size(), 2 * (100U + 4));
}

TEST(BlockProtocol, TakesBlocksOf254OnceAnnounced) {
  const Bytes answer(508, 0x44);
  BlockTerminal terminal([&](int, const Bytes&) { return answer; });
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.AnnounceBlockSize());
  line.Sent.clear();
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), ToHex(answer));
  EXPECT_EQ(line.Sent.size(), 2U) << "the command and one receipt";
}

TEST(BlockProtocol, MoreTimeIsNoFailure) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; }, {.Extensions = 20});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, "20 12 01 00 01 FF"), "9000");
  EXPECT_EQ(terminal.Executed().size(), 1U);
}

TEST(BlockProtocol, WaitsAMultipleOfTheBlockWaitingTimeWhereAsked) {
  test::ScriptedLine line({{Command, "21 C3 01 05 E6"},
                           {"12 E3 01 05 F5", "21 C3 01 00 E3"},  // 0 is reserved: as 1
                           {"12 E3 01 00 F0", Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  const std::vector<milliseconds> expected{milliseconds(1600), milliseconds(8000),
                                           milliseconds(1600)};
  EXPECT_EQ(line.Waits, expected);
}

TEST(BlockProtocol, ARepeatedGrantIsAsLong) {
  test::ScriptedLine line({{Command, "21 C3 01 05 E6"},
                           {"12 E3 01 05 F5", "21 91 00 B0"},
                           {"12 E3 01 05 F5", "21 00 02 90 00 B4"},
                           {AskCheck, Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  EXPECT_EQ(line.Waits[1], milliseconds(8000));
  EXPECT_EQ(line.Waits[2], milliseconds(8000));
  EXPECT_EQ(line.Waits.back(), milliseconds(1600));
}

// 255 times the block waiting time are 408 s; nobody waits that long twice.
TEST(BlockProtocol, TheTimeThatIsGrantedEnds) {
  test::ScriptedLine line({{"12 00 06 20 12 01 00 01 FF D9", "21 C3 01 FF 1C"},
                           {"12 E3 01 FF 0F", ""},
                           {AskOther, "21 C3 01 FF 1C"},
                           {Resynch, ResynchDone},
                           {Announce, Announced}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, "20 12 01 00 01 FF"), "broken");
  EXPECT_LT(line.Elapsed, std::chrono::minutes(10));
}

TEST(BlockProtocol, AnAnswerInEmptyPiecesEnds) {
  class EmptyPieces final : public test::VirtualLine {
   protected:
    void OnSent(ByteView bytes) override {
      if (bytes[1] == pcb::Resynch) return;
      Deliver(number_ ? FromHex("21 60 00 41") : FromHex("21 20 00 01"));
      number_ = !number_;
    }

   private:
    bool number_ = false;
  } line;
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "silent");
  EXPECT_LT(line.Sent.size(), 1000U);
}

TEST(BlockProtocol, EndlessRequestsForTimeEnd) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                         {.Extensions = 100000});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, "20 12 01 00 01 01"), "broken");
  EXPECT_EQ(terminal.Executed().size(), 1U);
}

TEST(BlockProtocol, EndlessAnswerEndsAndLeavesTheLineUsable) {
  Bytes answer(70000, 0x00);
  BlockTerminal terminal([&](int, const Bytes&) { return answer; });
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "too long");
  EXPECT_EQ(terminal.Executed().size(), 1U);
  answer = {0x90, 0x00};
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "9000");
}

TEST(BlockProtocol, TheLongestAnswerIsThatOfTheLengthField) {
  for (const std::size_t length : {65535U, 65536U}) {
    BlockTerminal terminal([&](int, const Bytes&) { return Bytes(length, 0x5A); });
    test::TerminalLine line(terminal);
    BlockProtocol protocol(line);
    const std::string answer = Ask(protocol, Unit::Card, "00 B0 00 00 00");
    EXPECT_EQ(answer, length == 65535 ? ToHex(Bytes(length, 0x5A)) : "too long");
  }
}

TEST(BlockProtocol, AnAbortLeavesTheNumbersAgreedAndCostsNoWait) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                         {.AbortsAnswers = true});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Ask(protocol, Unit::Terminal, ResetCt), "broken");
  EXPECT_EQ(terminal.Executed().size(), 3U);
  EXPECT_EQ(terminal.Resynchronisations(), 0);
  EXPECT_EQ(line.Elapsed, milliseconds(0));
}

TEST(BlockProtocol, AnAbortOfTheCommandLeavesTheNumbersAgreedAndCostsNoWait) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                         {.AbortsCommands = true});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Ask(protocol, Unit::Terminal, LongCommand), "broken");
    EXPECT_EQ(Ask(protocol, Unit::Terminal, ResetCt), "9000");
  }
  EXPECT_EQ(terminal.Executed().size(), 3U);
  EXPECT_EQ(terminal.Resynchronisations(), 0);
  EXPECT_EQ(line.Elapsed, milliseconds(0));
}

// A terminal that ends the dialogue before it counts the block.
TEST(BlockProtocol, TheTurnComesBackWithTheNumberToCountOnFrom) {
  test::ScriptedLine line(
      {{Command, "21 C2 00 E3"}, {"12 E2 00 F0", "21 80 00 A1"}, {Command, Answer}});
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "broken");
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
}

TEST(BlockProtocol, AnAbortThatGivesNoTurnBackCostsOneWait) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                         {.AbortsAnswers = true, .GivesTurnBack = false});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, ResetCt), "broken");
  EXPECT_EQ(line.Elapsed, milliseconds(1600));
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "broken");
  EXPECT_EQ(terminal.Executed().size(), 2U);
  EXPECT_EQ(terminal.Resynchronisations(), 0);
}

TEST(BlockProtocol, ASilentTerminalEndsAfterSixWaits) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; });
  test::TerminalLine line(terminal);
  line.ToTerminal = [](Bytes& bytes) { bytes.clear(); };
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "silent");
  EXPECT_EQ(line.Elapsed, 6 * milliseconds(1600));
}

TEST(BlockProtocol, ALineThatIsGoneIsSilent) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; });
  test::TerminalLine line(terminal);
  line.Unplugged = true;
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "silent");
}

TEST(BlockProtocol, EndlessNoiseEnds) {
  class NoisyLine final : public test::VirtualLine {
   public:
    Reception Receive(milliseconds /*longest*/) override { return {.Received = Bytes(100, 0xFF)}; }
  } line;
  BlockProtocol protocol(line);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "silent");
}

// A byte now and then is noise for as long as the device likes.
TEST(BlockProtocol, ABabblingDeviceEndsSoon) {
  class BabblingLine final : public test::VirtualLine {
   public:
    Reception Receive(milliseconds longest) override {
      constexpr milliseconds Pause{99};
      Elapsed += std::min(longest, Pause);
      return {.Received = longest < Pause ? Bytes{} : Bytes{0xFF}};
    }
  } line;
  BlockProtocol protocol(line);
  EXPECT_FALSE(protocol.TryBaud(9600));
  EXPECT_LT(line.Elapsed, milliseconds(1000));
}

// The card's numbers of the program that used the terminal before.
TEST(BlockProtocol, AnEarlierResponseIsNeverTakenForTheAnswer) {
  int count = 0;
  BlockTerminal terminal(
      [&](int, const Bytes&) { return Bytes{static_cast<std::uint8_t>(++count), 0x90, 0x00}; },
      {.ResynchConcernsCard = false});
  test::TerminalLine line(terminal);
  BlockProtocol before(line);
  ASSERT_TRUE(before.TryBaud(9600));
  EXPECT_EQ(Ask(before, Unit::Card, "00 B0 00 00 00"), "019000");
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.TryBaud(9600));
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "029000");
  BlockProtocol next(line);
  ASSERT_TRUE(next.TryBaud(9600));
  EXPECT_EQ(Ask(next, Unit::Card, "00 0E 00 00"), "039000");
  EXPECT_EQ(std::count(terminal.Executed().begin(), terminal.Executed().end(), FromHex("000E0000")),
            1);
}

TEST(BlockProtocol, ANewStartOfTheTerminalMayLeaveTheCardsNumbers) {
  BlockTerminal terminal(
      [](int unit, const Bytes&) {
        return unit == 0 ? Bytes{0xCA, 0x90, 0x00} : Bytes{0x90, 0x00};
      },
      {.ResynchConcernsCard = false});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.TryBaud(9600));
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "CA9000");
  int lost = 3;
  line.ToTerminal = [&](Bytes& bytes) {
    if (lost-- > 0) bytes.clear();
  };
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 0E 00 00"), "CA9000");
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "CA9000");
}

// A terminal of which a new start does not concern the card keeps the card's numbers.
TEST(BlockProtocol, ANewStartAgreesWithTheCardInEveryTerminal) {
  for (const bool concernsCard : {true, false}) {
    BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                           {.ResynchConcernsCard = concernsCard});
    test::TerminalLine line(terminal);
    BlockProtocol protocol(line);
    EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "9000");
    int lost = 3;
    line.ToTerminal = [&](Bytes& bytes) {
      if (lost-- > 0) bytes.clear();
    };
    EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), "9000");
    EXPECT_EQ(terminal.Executed().size(), 2U) << concernsCard;
    EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  }
}

TEST(BlockProtocol, FindsTheRateAtWhichTheTerminalAnswers) {
  test::ScriptedLine line({{Resynch, ""}, {Resynch, "FF FE"}, {Resynch, ResynchDone}});
  BlockProtocol protocol(line);
  EXPECT_FALSE(protocol.TryBaud(9600));
  EXPECT_EQ(line.Elapsed, milliseconds(250));
  EXPECT_FALSE(protocol.TryBaud(19200));
  EXPECT_TRUE(protocol.TryBaud(38400));
  EXPECT_EQ(line.Bauds, (std::vector<std::int32_t>{9600, 19200, 38400}));
}

// The search asks once at each rate, and a terminal that did not understand is asked anew by the
// next init.
TEST(BlockProtocol, EveryFlippedBitOfTheSearchIsNoTerminal) {
  for (const bool toTerminal : {true, false}) {
    for (std::size_t bit = 0; bit < 4 * 8; ++bit) {
      BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; });
      test::TerminalLine line(terminal);
      auto& tamper = toTerminal ? line.ToTerminal : line.ToHost;
      tamper = [bit](Bytes& bytes) {
        bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ 1U << bit % 8);
      };
      BlockProtocol protocol(line);
      EXPECT_FALSE(protocol.TryBaud(9600)) << toTerminal << " bit " << bit;
      tamper = [](Bytes&) {};
      line.DiscardInput();
      EXPECT_TRUE(protocol.TryBaud(9600) || protocol.TryBaud(9600)) << toTerminal << " bit " << bit;
    }
  }
}

TEST(BlockProtocol, ATerminalThatRefusesLargeBlocksKeepsToSmallOnes) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes(100, 0x77); },
                         {.OnBlockSize = BlockTerminal::BlockSizeManner::Refuses});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  EXPECT_TRUE(protocol.AnnounceBlockSize());
  EXPECT_EQ(Ask(protocol, Unit::Card, "00 B0 00 00 00"), ToHex(Bytes(100, 0x77)));
}

// By rule 7.4 a request that stays without an answer ends in a new start, and that leaves both
// sides with the 32 bytes of the standard.
TEST(BlockProtocol, ATerminalSilentOnTheBlockSizeKeepsToSmallOnes) {
  const Bytes answer(100, 0x77);
  BlockTerminal terminal([&](int, const Bytes&) { return answer; },
                         {.OnBlockSize = BlockTerminal::BlockSizeManner::IsSilent});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.TryBaud(9600));
  ASSERT_TRUE(protocol.AnnounceBlockSize());
  EXPECT_LE(line.Elapsed, milliseconds(1000));
  line.Sent.clear();
  EXPECT_EQ(Ask(protocol, Unit::Terminal, Bytes(70, 0x20)), ToHex(answer));
  EXPECT_EQ(line.Sent.size(), 6U) << "three pieces and three receipts";
  EXPECT_EQ(terminal.Executed(), std::vector<Bytes>{Bytes(70, 0x20)});
}

TEST(BlockProtocol, ATerminalSilentOnTheBlockSizeIsNotAskedAgain) {
  BlockTerminal terminal([&](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                         {.OnBlockSize = BlockTerminal::BlockSizeManner::IsSilent});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.TryBaud(9600));
  ASSERT_TRUE(protocol.AnnounceBlockSize());
  int lost = 3;
  line.ToTerminal = [&](Bytes& bytes) {
    if (lost-- > 0) bytes.clear();
  };
  line.Elapsed = milliseconds(0);
  EXPECT_EQ(Ask(protocol, Unit::Terminal, GetStatus), "9000");
  EXPECT_EQ(line.Elapsed, 3 * milliseconds(1600));
}

TEST(BlockProtocol, ATerminalThatFallsSilentAtTheBlockSizeIsSilent) {
  test::ScriptedLine line({{Announce, ""},
                           {Announce, ""},
                           {Announce, ""},
                           {Resynch, ""},
                           {Resynch, ""},
                           {Resynch, ""}});
  BlockProtocol protocol(line);
  EXPECT_FALSE(protocol.AnnounceBlockSize());
}

TEST(CharacterWait, FollowsTheRateDownToALimit) {
  EXPECT_EQ(BlockProtocol::CharacterWait(9600), milliseconds(854));
  EXPECT_EQ(BlockProtocol::CharacterWait(19200), milliseconds(427));
  EXPECT_EQ(BlockProtocol::CharacterWait(115200), milliseconds(200));
}

TEST(BlockProtocol, WaitsForFurtherBytesByTheRate) {
  test::ScriptedLine line(test::ScriptedLine::Script{{Resynch, "21|E0 00 C1"}});
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.TryBaud(19200));
  EXPECT_EQ(line.Waits, (std::vector<milliseconds>{milliseconds(250), milliseconds(427)}));
}

struct RepeatRow {
  const char* Name;
  Unit With;
  const char* Command;
  bool MayBe;
};

class Repetition : public testing::TestWithParam<RepeatRow> {};

TEST_P(Repetition, IsOnlyForCommandsWithoutEffect) {
  EXPECT_EQ(MayBeRepeated(GetParam().With, FromHex(GetParam().Command)), GetParam().MayBe);
}

INSTANTIATE_TEST_SUITE_P(
    Host, Repetition,
    testing::Values(RepeatRow{"ResetCt", Unit::Terminal, "2011000000", false},
                    RepeatRow{"GetStatus", Unit::Terminal, "2013008100", true},
                    RepeatRow{"UsbQuery", Unit::Terminal, "2071000100", true},
                    RepeatRow{"RequestIcc", Unit::Terminal, "201201000101", false},
                    RepeatRow{"EjectIcc", Unit::Terminal, "201501010101", false},
                    RepeatRow{"Select", Unit::Card, "00A4020C022F02", true},
                    RepeatRow{"ReadBinary", Unit::Card, "00B0000000", true},
                    RepeatRow{"ReadRecord", Unit::Card, "00B201F400", true},
                    RepeatRow{"EraseBinary", Unit::Card, "000E0000", false},
                    RepeatRow{"EraseBinaryToTheTerminal", Unit::Terminal, "000E0000", false},
                    RepeatRow{"Unknown", Unit::Card, "00D6000001FF", false},
                    RepeatRow{"OneByte", Unit::Card, "00", false}),
    RowName<RepeatRow>);

}  // namespace
}  // namespace ctapi::host
