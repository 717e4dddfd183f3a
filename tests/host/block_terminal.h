#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ctapi::test {

// The terminal's side of the block protocol T=1, written from ISO 7816-3 and apart from the
// library's own framing: bytes from the host go in, bytes to the host come out. What the commands
// do is handed in. It is strict: a block that is damaged, out of sequence, too long or out of place
// is invalid, and invalid blocks are answered by rules 7.1 to 7.4 only.
class BlockTerminal {
 public:
  using Bytes = std::vector<std::uint8_t>;
  using ByteView = std::span<const std::uint8_t>;
  using Execute = std::function<Bytes(int unit, const Bytes& command)>;

  // One sequence of numbers for each pair of addresses, as the standard has it, or one for the
  // line, in which the last block stands for all addresses, too.
  enum class Numbering { PerAddress, PerLine };
  enum class BlockSizeManner { Takes, Refuses, IsSilent };

  struct Manners {
    Numbering Counts = Numbering::PerAddress;
    std::size_t BlockSize = 32;  // information bytes that it takes in a block
    int Extensions = 0;          // requests for more time before each answer
    std::uint8_t Multiplier = 1;
    std::optional<std::uint8_t> AskForBlockSize{};  // before the first answer
    bool AbortsAnswers = false;                     // in place of each answer
    bool AbortsCommands = false;                    // in place of each receipt inside a chain
    bool GivesTurnBack = true;                      // by an R-block behind an abort
    BlockSizeManner OnBlockSize = BlockSizeManner::Takes;
    bool NamesErrors = true;          // in R-blocks; otherwise these tell the number alone
    bool ResynchConcernsCard = true;  // a new start of the terminal is one of the card too
    bool AnswersCardsResynch = true;
  };

  explicit BlockTerminal(Execute execute) : BlockTerminal(std::move(execute), Manners{}) {}
  BlockTerminal(Execute execute, Manners manners)
      : execute_(std::move(execute)), manners_(manners) {}

  // Takes bytes; the answer is empty until they end a block.
  [[nodiscard]] Bytes Take(ByteView bytes);
  // The line has been silent for longer than between two bytes of a block.
  [[nodiscard]] Bytes TakeSilence();

  [[nodiscard]] const std::vector<Bytes>& Executed() const { return executed_; }
  [[nodiscard]] int Resynchronisations() const { return resynchronisations_; }

 private:
  // A block without its addresses: a reply goes to whoever spoke.
  struct Content {
    std::uint8_t Control = 0;
    Bytes Information{};
  };
  struct Sequence {
    bool Expected = false;          // N(S) of the next I-block from the host
    bool Next = false;              // N(S) of the next I-block to it
    std::optional<Content> Last{};  // the last block to the host
    std::optional<Content> LastInformation{};
    Bytes Command{};  // what has come of it
    Bytes Answer{};   // what is left of it behind the last I-block
  };

  [[nodiscard]] Bytes OnBlock();
  [[nodiscard]] Bytes OnInformation(std::uint8_t control, ByteView information);
  [[nodiscard]] Bytes OnReceipt(std::uint8_t control);
  [[nodiscard]] Bytes OnSupervisory(std::uint8_t control, ByteView information);
  [[nodiscard]] Bytes OnResynch();
  [[nodiscard]] Bytes AfterAbort();
  [[nodiscard]] Bytes AnswerOrDelay();
  [[nodiscard]] Bytes Piece();
  [[nodiscard]] Bytes OnInvalid(std::uint8_t error);
  [[nodiscard]] Bytes Receipt(std::uint8_t error);
  [[nodiscard]] Bytes Say(std::uint8_t control, ByteView information);
  [[nodiscard]] bool Awaits(std::uint8_t response) const;
  [[nodiscard]] bool IsInsideItsChain() const;
  [[nodiscard]] std::size_t Scope(std::size_t unit) const {
    return manners_.Counts == Numbering::PerLine ? 0 : unit;
  }
  [[nodiscard]] Sequence& Here() { return sequences_[Scope(unit_)]; }
  [[nodiscard]] const Sequence& Here() const { return sequences_[Scope(unit_)]; }

  Execute execute_;
  Manners manners_;
  std::array<Sequence, 2> sequences_{};
  std::size_t unit_ = 1;
  std::size_t hostBlockSize_ = 32;
  int delaysLeft_ = 0;
  bool askedForBlockSize_ = false;
  Bytes received_;
  std::vector<Bytes> executed_;
  int resynchronisations_ = 0;
};

}  // namespace ctapi::test
