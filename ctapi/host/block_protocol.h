#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "host/line_port.h"
#include "protocol/block.h"

namespace ctapi::host {

// The host's side of the block protocol T=1 (ISO 7816-3) on a serial line. Host and terminal speak
// in turn, the host first. ISO 7816-3 counts blocks for each pair of addresses; many terminals keep
// one count for the whole line. So the numbers are agreed on only with the unit that spoke last:
// after a change of address the count is a guess, and nothing but a first answer that follows the
// command at once is taken, since a repeated one may be that of an earlier command.
//
// A block that comes damaged, late or not at all is asked for again where the numbers are agreed.
// Otherwise, and after three failures in a row, the line is started anew. A command is sent again
// only where the terminal cannot have carried it out, or where carrying it out twice does no harm.
class BlockProtocol {
 public:
  enum class Outcome {
    Answered,
    Broken,   // no usable answer; the line works
    TooLong,  // more than 65,535 bytes; the line works
    Silent,   // the other side no longer answers
  };

  // Waiting times of the protocol: for the first byte of a block (BWT), for each further one (CWT).
  // CWT is 8,203 bit times (CWI 13), 0.85 s at 9600 baud. It does not go below 0.2 s, although
  // 115200 baud would give 0.07 s: drivers of USB adapters and a busy system hold bytes back for
  // longer than that, and a wait that is too long costs nothing but time after a fault.
  static constexpr std::chrono::milliseconds BlockWait{1600};
  [[nodiscard]] static std::chrono::milliseconds CharacterWait(std::int32_t baud);

  static constexpr std::size_t DefaultBlockSize = 32;  // IFSC and IFSD until told otherwise

  explicit BlockProtocol(LinePort& port) : port_(port) {}

  // Sets the line to this rate and asks once for a new start. True: the terminal answered.
  [[nodiscard]] bool TryBaud(std::int32_t baud);
  // Announces that the host takes blocks of 254 bytes. A terminal that refuses keeps to 32, and so
  // does one that does not answer; the latter is started anew and not asked again. False: it does
  // not answer that either.
  [[nodiscard]] bool AnnounceBlockSize();

  [[nodiscard]] Outcome Exchange(Unit unit, ByteView command, Bytes& response);

 private:
  struct Numbers {
    bool Send = false;      // N(S) of the next I-block to the terminal
    bool Expected = false;  // N(S) of the next I-block from it
  };
  struct Dialogue;
  // Incomplete: failed before the last piece was sent, so that nothing can have been carried out.
  enum class Step { GoOn, Answered, Failed, Incomplete, Aborted, TooLong };

  void TurnTo(Unit unit);
  [[nodiscard]] Step Attempt(Unit unit, ByteView command, Bytes& response);
  [[nodiscard]] Step Take(Dialogue& dialogue, const FramedBlock& received);
  void SendPiece(Dialogue& dialogue);
  void Send(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step Repeat(Dialogue& dialogue, const Block& block);
  // The other side has the last piece.
  void Acknowledge(Dialogue& dialogue);
  [[nodiscard]] Step OnFailure(Dialogue& dialogue, BlockError error);
  [[nodiscard]] Step OnStray(Dialogue& dialogue);
  [[nodiscard]] Step OnInformation(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step OnReceipt(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step OnRefusal(Dialogue& dialogue);
  [[nodiscard]] Step OnSupervisory(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step AfterAbort(Dialogue& dialogue, const FramedBlock& received);

  [[nodiscard]] FramedBlock ReceiveBlock(std::chrono::milliseconds wait);
  enum class Reply { Granted, Refused, None };
  [[nodiscard]] Reply Request(const Block& request, int attempts, std::chrono::milliseconds wait);
  [[nodiscard]] bool StartAnew(Unit unit);
  [[nodiscard]] Reply StartCardAnew();
  void ForgetNumbers(Unit agreedWith, bool areAgreed);
  [[nodiscard]] std::size_t& BlockSizeOf(Unit unit) {
    return blockSizes_[static_cast<std::size_t>(unit)];
  }

  LinePort& port_;
  std::int32_t baud_ = 9600;
  Unit unit_ = Unit::Terminal;  // whom the numbers are for
  Numbers numbers_{};
  Numbers numbersOfTheOther_{};  // as they were when it was left
  bool numbersAreAgreed_ = true;
  bool countsTheLine_ = false;  // a guess: one count for both addresses
  // Information bytes that each unit takes in a block (IFSC).
  std::array<std::size_t, 2> blockSizes_{DefaultBlockSize, DefaultBlockSize};
  bool takesAnnouncement_ = true;
  std::optional<bool> cardStartsAnew_{};  // whether the card's address answers a new start
};

}  // namespace ctapi::host
