#include <map>
#include <random>

#include "host/repeatable_commands.h"
#include "host/virtual_line.h"

// Terminals that count blocks for each address and terminals that count the line, with random
// commands to both addresses. Every command is unlike every other and every answer names its
// command, so that an answer to another one shows.
namespace ctapi::host {
namespace {

using ctapi::test::BlockTerminal;
using ctapi::test::PrintTo;
using ctapi::test::RowName;
using ctapi::test::ToHex;
using Outcome = BlockProtocol::Outcome;
using Random = std::mt19937;

constexpr int Commands = 2000;
constexpr std::size_t LengthAt = 2;

std::size_t Pick(Random& random, std::size_t least, std::size_t most) {
  return least + random() % (most - least + 1);  // the same numbers with every standard library
}

struct Command {
  Unit With;
  Bytes Content;
};

// CLA, INS, the number in four bytes, and often as many more as make a chain.
Command MakeCommand(Random& random, unsigned number) {
  constexpr std::array<std::uint8_t, 4> ForTerminal{0x11, 0x12, 0x13, 0x15};
  constexpr std::array<std::uint8_t, 4> ForCard{0xA4, 0xB0, 0xB2, 0x0E};
  const Unit unit = Pick(random, 0, 1) == 0 ? Unit::Terminal : Unit::Card;
  const auto& instructions = unit == Unit::Terminal ? ForTerminal : ForCard;
  Bytes content{static_cast<std::uint8_t>(unit == Unit::Terminal ? 0x20 : 0x00),
                instructions[Pick(random, 0, 3)]};
  for (int shift = 24; shift >= 0; shift -= 8) {
    content.push_back(static_cast<std::uint8_t>(number >> shift));
  }
  if (Pick(random, 0, 3) == 0) content.resize(Pick(random, 33, 200), 0x5A);
  return {unit, content};
}

// The whole command behind its unit, and as many bytes as make a chain of one to nine blocks.
Bytes AnswerTo(int unit, const Bytes& command) {
  Bytes answer{static_cast<std::uint8_t>(unit)};
  answer.insert(answer.end(), command.begin(), command.end());
  answer.resize(answer.size() + command[5] % 9U * 32, command[5]);
  answer.insert(answer.end(), {0x90, 0x00});
  return answer;
}

struct Tally {
  int Right = 0;
  int Lost = 0;
  int Wrong = 0;
  int CarriedOut = 0;
  int Twice = 0;  // commands that must not be carried out twice, and were
};

class Course {
 public:
  Course(const BlockTerminal::Manners& manners, unsigned seed)
      : random_(seed),
        manners_(manners),
        terminal_(MakeTerminal()),
        line_(terminal_),
        protocol_(line_) {}

  Tally Go() {
    Tally tally;
    EXPECT_TRUE(IsOpen());
    Disturb();
    for (unsigned number = 0; number < Commands; ++number) Ask(number, tally);
    CountRepetitions(tally);
    return tally;
  }

  // Of so many blocks in each direction one is damaged, lost or cut.
  std::size_t BlocksForAFault = 0;

 private:
  [[nodiscard]] BlockTerminal MakeTerminal() {
    const auto execute = [this](int unit, const Bytes& command) {
      ++times_[command];
      return AnswerTo(unit, command);
    };
    return {execute, manners_};
  }

  [[nodiscard]] bool IsOpen() { return protocol_.TryBaud(9600) && protocol_.AnnounceBlockSize(); }

  // The library uses a line that fell silent no more until it is opened again. What a card's
  // address has of half a command outlives that where a new start of the terminal does not concern
  // it; such a terminal is switched off and on.
  void Reopen() {
    if (!manners_.ResynchConcernsCard) terminal_ = MakeTerminal();
    while (!IsOpen()) {
    }
  }

  void Ask(unsigned number, Tally& tally) {
    const Command command = MakeCommand(random_, number);
    Bytes response;
    const Outcome outcome = protocol_.Exchange(command.With, command.Content, response);
    if (outcome != Outcome::Answered) {
      ++tally.Lost;
      if (outcome == Outcome::Silent) Reopen();
    } else if (response == AnswerTo(command.With == Unit::Terminal ? 1 : 0, command.Content)) {
      ++tally.Right;
    } else {
      ++tally.Wrong;
      ADD_FAILURE() << number << ": " << ToHex(command.Content) << " -> " << ToHex(response);
    }
  }

  void CountRepetitions(Tally& tally) const {
    for (const auto& [command, times] : times_) {
      const Unit unit = command[0] == 0x20 ? Unit::Terminal : Unit::Card;
      if (times > 1 && !MayBeRepeated(unit, command)) ++tally.Twice;
      tally.CarriedOut += times;
    }
  }

  void Disturb() {
    if (BlocksForAFault == 0) return;
    const auto fault = [this](Bytes& bytes) {
      if (bytes.empty() || Pick(random_, 1, BlocksForAFault) != 1) return;
      const std::size_t at = Pick(random_, 0, bytes.size() - 1);
      switch (Pick(random_, 0, 2)) {
        case 0:
          // With another length the check byte would be another one, and one in 256 is right.
          if (at == LengthAt) break;
          bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ (1U << Pick(random_, 0, 7)));
          break;
        case 1:
          bytes.clear();
          break;
        default:
          bytes.resize(at);
      }
    };
    line_.ToTerminal = fault;
    line_.ToHost = fault;
  }

  Random random_;
  BlockTerminal::Manners manners_;
  std::map<Bytes, int> times_;  // that a command was carried out
  BlockTerminal terminal_;
  test::TerminalLine line_;
  BlockProtocol protocol_;
};

struct KindRow {
  const char* Name;
  BlockTerminal::Manners Manners;
  std::size_t LeastBlocksForAFault = 4;
};

constexpr auto PerLine = BlockTerminal::Numbering::PerLine;
constexpr auto IsSilent = BlockTerminal::BlockSizeManner::IsSilent;

const std::vector<KindRow> Kinds{
    {"PerAddress", {}},
    {"PerLine", {.Counts = PerLine}},
    {"PerAddressWithoutErrors", {.NamesErrors = false}},
    {"PerLineWithoutErrors", {.Counts = PerLine, .NamesErrors = false}},
    {"PerAddressWithMoreTime", {.Extensions = 1}},
    {"PerLineWithMoreTime", {.Counts = PerLine, .Extensions = 1}},
    {"PerAddressWithABlockSize", {.AskForBlockSize = std::uint8_t{100}}},
    {"PerLineWithABlockSize", {.Counts = PerLine, .AskForBlockSize = std::uint8_t{100}}},
    {"PerAddressSmallBlocksOnly", {.OnBlockSize = IsSilent}},
    {"PerLineSmallBlocksOnly", {.Counts = PerLine, .OnBlockSize = IsSilent}},
    // A card's address that was asked for a new start three times in vain is taken for one that
    // knows none; where it does, half a command may be left there.
    {"CardsNumbersOutliveTheTerminals", {.ResynchConcernsCard = false}, 20},
    {"CardsAddressHasNoNewStart", {.AnswersCardsResynch = false}},
    {"PerLineCardsAddressHasNoNewStart", {.Counts = PerLine, .AnswersCardsResynch = false}}};

class BlockNumbering : public testing::TestWithParam<KindRow> {};

TEST_P(BlockNumbering, EveryAnswerBelongsToItsCommand) {
  for (const unsigned seed : {1U, 2U, 3U, 4U}) {
    Course course(GetParam().Manners, seed);
    const Tally tally = course.Go();
    EXPECT_EQ(tally.Right, Commands) << seed;
    EXPECT_EQ(tally.CarriedOut, Commands) << seed;
  }
}

// Another program's numbers, of which a new start of the terminal leaves the card's.
TEST_P(BlockNumbering, TheNumbersOfAnEarlierHostDoNoHarm) {
  for (const unsigned seed : {5U, 6U, 7U}) {
    BlockTerminal terminal(&AnswerTo, GetParam().Manners);
    test::TerminalLine line(terminal);
    Random random(seed);
    for (unsigned host = 0; host < 200; ++host) {
      BlockProtocol protocol(line);
      ASSERT_TRUE(protocol.TryBaud(9600));
      for (unsigned i = 0; i < 7; ++i) {
        const Command command = MakeCommand(random, host * 7 + i);
        Bytes response;
        ASSERT_EQ(protocol.Exchange(command.With, command.Content, response), Outcome::Answered);
        ASSERT_EQ(response, AnswerTo(command.With == Unit::Terminal ? 1 : 0, command.Content));
      }
    }
  }
}

TEST_P(BlockNumbering, NoFaultOnTheLineMakesAWrongAnswer) {
  constexpr std::array<std::pair<std::size_t, int>, 4> Faults{
      {{100, 98}, {20, 85}, {8, 1}, {4, 1}}};
  for (const auto& [blocksForAFault, leastRight] : Faults) {
    if (blocksForAFault < GetParam().LeastBlocksForAFault) continue;
    for (unsigned seed = 1; seed <= 6; ++seed) {
      Course course(GetParam().Manners, seed);
      course.BlocksForAFault = blocksForAFault;
      const Tally tally = course.Go();
      EXPECT_EQ(tally.Wrong, 0) << blocksForAFault << ' ' << seed;
      EXPECT_EQ(tally.Twice, 0) << blocksForAFault << ' ' << seed;
      EXPECT_GE(tally.Right, Commands * leastRight / 100) << blocksForAFault << ' ' << seed;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Host, BlockNumbering, testing::ValuesIn(Kinds), RowName<KindRow>);

// Both kinds are served without a detour once the first refusal has told which one it is.
TEST(BlockNumbering, ATerminalRefusesOnceAtMost) {
  for (const auto counts : {BlockTerminal::Numbering::PerAddress, PerLine}) {
    BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; }, {.Counts = counts});
    test::TerminalLine line(terminal);
    BlockProtocol protocol(line);
    Bytes response;
    for (int i = 0; i < 20; ++i) {
      const Bytes getStatus{0x20, 0x13, 0x00, 0x80, 0x00};
      const Bytes readBinary{0x00, 0xB0, 0x00, 0x00, 0x00};
      ASSERT_EQ(protocol.Exchange(Unit::Terminal, getStatus, response), Outcome::Answered);
      ASSERT_EQ(protocol.Exchange(Unit::Card, readBinary, response), Outcome::Answered);
    }
    EXPECT_EQ(line.Sent.size(), counts == PerLine ? 41U : 40U);
  }
}

TEST(BlockNumbering, ACardsAddressWithoutANewStartIsAskedForOneOnce) {
  BlockTerminal terminal([](int, const Bytes&) { return Bytes{0x90, 0x00}; },
                         {.AnswersCardsResynch = false});
  test::TerminalLine line(terminal);
  BlockProtocol protocol(line);
  ASSERT_TRUE(protocol.TryBaud(9600));
  Bytes response;
  for (int i = 0; i < 3; ++i) {
    const Bytes getStatus{0x20, 0x13, 0x00, 0x80, 0x00};
    const Bytes eraseBinary{0x00, 0x0E, 0x00, 0x00};
    ASSERT_EQ(protocol.Exchange(Unit::Terminal, getStatus, response), Outcome::Answered);
    ASSERT_EQ(protocol.Exchange(Unit::Card, eraseBinary, response), Outcome::Answered);
  }
  EXPECT_EQ(line.Elapsed, std::chrono::milliseconds(3 * 250));
}

// A terminal that begins to count anew by itself, as one does that restarts for RESET CT.
TEST(BlockNumbering, ATerminalThatRestartsGivesNoWrongAnswer) {
  for (const auto counts : {BlockTerminal::Numbering::PerAddress, PerLine}) {
    std::optional<BlockTerminal> terminal;
    terminal.emplace(&AnswerTo, BlockTerminal::Manners{.Counts = counts});
    test::TerminalLine line(*terminal);
    BlockProtocol protocol(line);
    ASSERT_TRUE(protocol.TryBaud(9600));
    Random random(8);
    int right = 0;
    for (unsigned number = 0; number < Commands; ++number) {
      const Command command = MakeCommand(random, number);
      Bytes response;
      if (protocol.Exchange(command.With, command.Content, response) != Outcome::Answered) continue;
      ++right;
      ASSERT_EQ(response, AnswerTo(command.With == Unit::Terminal ? 1 : 0, command.Content));
      if (command.Content[1] == 0x11) {
        terminal.emplace(&AnswerTo, BlockTerminal::Manners{.Counts = counts});
      }
    }
    EXPECT_GE(right, Commands * 95 / 100);
  }
}

}  // namespace
}  // namespace ctapi::host
