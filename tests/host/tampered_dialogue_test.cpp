#include <algorithm>

#include "host/virtual_line.h"
#include "simulator/simulated_terminal.h"

// A whole dialogue with a simulated terminal, from the first block on, disturbed in every place.
namespace ctapi::host {
namespace {

using ctapi::test::BlockTerminal;
using ctapi::test::ToHex;
using Outcome = BlockProtocol::Outcome;

struct Command {
  Unit With;
  const char* Hex;
};

// A command of 60 bytes is sent in two blocks; the answer of 102 bytes comes in four,
// unless the host has announced that it takes larger ones.
constexpr const char* LongCommand =
    "00A4040035000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
    "00"
    "0000000000000000000000";
constexpr std::array Commands{
    Command{Unit::Terminal, "2013008100"},   Command{Unit::Terminal, "201201000101"},
    Command{Unit::Card, LongCommand},        Command{Unit::Card, "00A4040C06D27600000102"},
    Command{Unit::Card, "00B0810000"},       Command{Unit::Card, "000E0000"},
    Command{Unit::Terminal, "201501000100"}, Command{Unit::Terminal, "2011000000"}};

SimulatedTerminal MakeTerminal() {
  SimulatedTerminal terminal(*ProfileOf("gamma"));
  EgkContents contents;
  contents.Vsd.EfPd = Bytes(100, 0x3C);
  terminal.Insert(EgkCard(contents));
  return terminal;
}

// What the simulated terminal answers without a line in between.
std::vector<std::string> DirectAnswers() {
  SimulatedTerminal terminal = MakeTerminal();
  std::vector<std::string> answers;
  for (const Command& command : Commands) {
    const Bytes bytes = *BytesFromHex(command.Hex);
    answers.push_back(ToHex(command.With == Unit::Terminal ? terminal.TransmitToTerminal(bytes)
                                                           : terminal.TransmitToCard(bytes)));
  }
  return answers;
}

// The dialogue over a line of its own.
struct Course {
  explicit Course(BlockTerminal::Manners manners = {.Extensions = 1})
      : Device(MakeTerminal()),
        Terminal(
            [this](int unit, const Bytes& command) {
              return unit == 1 ? Device.TransmitToTerminal(command)
                               : Device.TransmitToCard(command);
            },
            manners),
        Line(Terminal) {}

  void Go() {
    BlockProtocol protocol(Line);
    (void)protocol.TryBaud(9600);
    if (Announces) (void)protocol.AnnounceBlockSize();
    for (const Command& command : Commands) {
      Bytes response;
      const Outcome outcome = protocol.Exchange(command.With, *BytesFromHex(command.Hex), response);
      Answers.push_back(outcome == Outcome::Answered ? ToHex(response) : "failed");
    }
  }

  [[nodiscard]] std::ptrdiff_t Times(const char* hex) const {
    const auto& done = Terminal.Executed();
    return std::count(done.begin(), done.end(), *BytesFromHex(hex));
  }

  SimulatedTerminal Device;
  BlockTerminal Terminal;
  test::TerminalLine Line;
  bool Announces = true;
  std::vector<std::string> Answers;
};

void ExpectNothingTwice(const Course& run) {
  for (const char* once : {"000E0000", "201501000100", "201201000101", "2011000000"}) {
    EXPECT_LE(run.Times(once), 1) << once;
  }
}

TEST(TamperedDialogue, UndisturbedGivesTheTerminalsAnswers) {
  for (const bool announces : {true, false}) {
    Course run;
    run.Announces = announces;
    run.Go();
    EXPECT_EQ(run.Answers, DirectAnswers());
  }
}

TEST(TamperedDialogue, EverySplitOfTheAnswersGivesTheSame) {
  for (std::size_t length = 1; length <= 258; ++length) {
    Course run;
    run.Line.PieceLength = length;
    run.Go();
    EXPECT_EQ(run.Answers, DirectAnswers()) << length;
  }
}

// Flips one bit of the whole dialogue after the other, in one direction. A single one is always
// mended: the damaged block is asked for again.
void FlipEveryBit(test::TerminalLine::Tamper test::TerminalLine::* direction, bool announces) {
  const std::vector<std::string> expected = DirectAnswers();
  std::size_t length = 0;
  int starts = 0;
  {
    Course run;
    run.Announces = announces;
    run.Line.*direction = [&](Bytes& bytes) { length += bytes.size(); };
    run.Go();
    starts = run.Terminal.Resynchronisations();
  }
  ASSERT_GE(length, 180U);
  const std::size_t opening = 4;  // the block of the baud search is sent once
  for (std::size_t bit = opening * 8; bit < length * 8; ++bit) {
    Course run;
    run.Announces = announces;
    std::size_t passed = 0;
    run.Line.*direction = [&](Bytes& bytes) {
      const std::size_t at = bit / 8 - passed;
      if (bit / 8 >= passed && at < bytes.size()) {
        bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ (1U << (bit % 8)));
      }
      passed += bytes.size();
    };
    run.Go();
    ASSERT_EQ(run.Answers, expected) << "byte " << bit / 8 << " bit " << bit % 8;
    ExpectNothingTwice(run);
    // One more or fewer only where the fault hit a new start itself.
    ASSERT_NEAR(run.Terminal.Resynchronisations(), starts, 1)
        << "byte " << bit / 8 << " bit " << bit % 8;
  }
}

TEST(TamperedDialogue, EveryFlippedBitToTheTerminalIsMended) {
  FlipEveryBit(&test::TerminalLine::ToTerminal, true);
}
TEST(TamperedDialogue, EveryFlippedBitToTheHostIsMended) {
  FlipEveryBit(&test::TerminalLine::ToHost, true);
}
TEST(TamperedDialogue, EveryFlippedBitOfSmallBlocksToTheTerminalIsMended) {
  FlipEveryBit(&test::TerminalLine::ToTerminal, false);
}
TEST(TamperedDialogue, EveryFlippedBitOfSmallBlocksToTheHostIsMended) {
  FlipEveryBit(&test::TerminalLine::ToHost, false);
}

// Loses a run of blocks, of every length at every place, in one direction. Whatever happens, the
// answers are right or the command fails, and nothing is carried out twice that must not be.
void LoseBlocks(test::TerminalLine::Tamper test::TerminalLine::* direction) {
  const std::vector<std::string> expected = DirectAnswers();
  for (int first = 1; first < 32; ++first) {
    for (int count = 1; count <= 8; ++count) {
      Course run;
      int block = -1;
      run.Line.*direction = [&](Bytes& bytes) {
        ++block;
        if (block >= first && block < first + count) bytes.clear();
      };
      run.Go();
      ExpectNothingTwice(run);
      if (count <= 2) {
        EXPECT_EQ(run.Answers, expected) << first << ' ' << count;
      }
      const auto failed = std::find(run.Answers.begin(), run.Answers.end(), "failed");
      EXPECT_TRUE(std::equal(run.Answers.begin(), failed, expected.begin())) << first;
    }
  }
}

TEST(TamperedDialogue, LostBlocksToTheTerminalDoNoHarm) {
  LoseBlocks(&test::TerminalLine::ToTerminal);
}
TEST(TamperedDialogue, LostBlocksToTheHostDoNoHarm) {
  LoseBlocks(&test::TerminalLine::ToHost);
}

}  // namespace
}  // namespace ctapi::host
