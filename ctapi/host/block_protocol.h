#pragma once

#include <array>
#include <chrono>
#include <cstdint>

#include "host/line_port.h"
#include "protocol/block.h"

namespace ctapi::host {

// The host's side of the block protocol T=1 (ISO 7816-3) on a serial line. Host and terminal speak
// in turn, the host first; terminal and card have sequence numbers of their own.
//
// A block that comes damaged, late or not at all is asked for again. After three failures in a row
// the line is resynchronised, and a command is sent anew only where carrying it out twice does no
// harm.
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

  explicit BlockProtocol(LinePort& port) : port_(port) {}

  // Sets the line to this rate and asks once for a new start. True: the terminal answered.
  [[nodiscard]] bool TryBaud(std::int32_t baud);
  // Announces that the host takes blocks of 254 bytes. A terminal that refuses keeps to 32. False:
  // it does not answer at all.
  [[nodiscard]] bool AnnounceBlockSize();

  [[nodiscard]] Outcome Exchange(Unit unit, ByteView command, Bytes& response);

 private:
  // What is agreed with one unit.
  struct Peer {
    bool SendNumber = false;      // N(S) of the next I-block to it
    bool ExpectedNumber = false;  // N(S) of the next I-block from it
    std::size_t BlockSize = 32;   // information bytes that it takes in a block (IFSC)
  };
  struct Dialogue;
  enum class Step { GoOn, Answered, Failed, Aborted, TooLong };

  [[nodiscard]] Step Attempt(Unit unit, ByteView command, Bytes& response);
  void SendPiece(Dialogue& dialogue);
  void Send(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step Repeat(Dialogue& dialogue, const Block& block);
  // The other side has the last piece.
  void Acknowledge(Dialogue& dialogue);
  [[nodiscard]] Step OnFailure(Dialogue& dialogue, BlockError error);
  [[nodiscard]] Step OnInformation(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step OnReceipt(Dialogue& dialogue, const Block& block);
  [[nodiscard]] Step OnSupervisory(Dialogue& dialogue, const Block& block);

  [[nodiscard]] FramedBlock ReceiveBlock(std::chrono::milliseconds wait);
  enum class Reply { Granted, Refused, None };
  [[nodiscard]] Reply Request(const Block& request, int attempts, std::chrono::milliseconds wait);
  [[nodiscard]] bool Recover(Unit unit);
  void TakeBlockSize(const Block& request);
  [[nodiscard]] Peer& PeerOf(Unit unit) { return peers_[static_cast<std::size_t>(unit)]; }

  LinePort& port_;
  std::array<Peer, 2> peers_{};  // indexed by unit
  std::int32_t baud_ = 9600;
};

// Whether carrying a command out twice leaves everything as carrying it out once does. ERASE BINARY
// and EJECT ICC are not among them, and neither is REQUEST ICC: where the first one was carried
// out, its repetition is answered with "already active" (6201), which the program takes for a
// memory card.
[[nodiscard]] bool MayBeRepeated(Unit unit, ByteView command);

}  // namespace ctapi::host
