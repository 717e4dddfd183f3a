#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ctapi::test {

// The terminal's side of the block protocol T=1, written apart from the library's own framing:
// bytes from the host go in, bytes to the host come out. What the commands do is handed in.
class BlockTerminal {
 public:
  using Bytes = std::vector<std::uint8_t>;
  using ByteView = std::span<const std::uint8_t>;
  using Execute = std::function<Bytes(int unit, const Bytes& command)>;

  struct Manners {
    std::size_t BlockSize = 32;  // information bytes that it takes in a block
    int Extensions = 0;          // requests for more time before each answer
    std::uint8_t Multiplier = 1;
    std::optional<std::uint8_t> AskForBlockSize{};  // before the first answer
    bool AbortsAnswers = false;                     // in place of each answer
    bool RefusesBlockSize = false;                  // answers the host's request with a receipt
    bool ResynchConcernsCard = true;  // a new start of the terminal is one of the card too
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
  struct Side {
    bool Expected = false;
    bool Number = false;
    bool Unacknowledged = false;  // its last I-block
    Bytes Command{};
    Bytes Answer{};  // what is left of it behind the last I-block
    Bytes LastInformation{};
    Bytes LastSent{};
  };

  [[nodiscard]] Bytes OnBlock();
  [[nodiscard]] Bytes OnInformation(Side& side, std::uint8_t control, ByteView information);
  [[nodiscard]] Bytes OnReceipt(Side& side, std::uint8_t control);
  [[nodiscard]] Bytes OnSupervisory(Side& side, std::uint8_t control, ByteView information);
  [[nodiscard]] Bytes AnswerOrDelay(Side& side);
  [[nodiscard]] Bytes Piece(Side& side);
  [[nodiscard]] Bytes Complain(std::uint8_t error);
  [[nodiscard]] Bytes Make(std::uint8_t control, ByteView information);
  [[nodiscard]] Side& Here() { return sides_[unit_]; }

  Execute execute_;
  Manners manners_;
  std::array<Side, 2> sides_{};
  std::size_t unit_ = 1;
  std::size_t hostBlockSize_ = 32;
  int delaysLeft_ = 0;
  bool askedForBlockSize_ = false;
  Bytes received_;
  std::vector<Bytes> executed_;
  int resynchronisations_ = 0;
};

}  // namespace ctapi::test
