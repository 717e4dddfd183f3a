#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "protocol/bytes.h"
#include "protocol/windows/handle.h"

namespace ctapi {

// The device behind an open line is gone or takes nothing more: unplugged, or its driver failed.
struct ComLineLost : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class ComLine;

struct OpenedComLine {
  DWORD Error = ERROR_FILE_NOT_FOUND;  // the system's number; see MeansNoComPort
  std::unique_ptr<ComLine> Line{};     // on success only
};

// Whether an error of opening says that there is no such port or no hardware behind it, and whether
// it says that another program has it: the system lets one program have a port at a time, and tells
// no other reason of a refusal.
[[nodiscard]] bool MeansNoComPort(DWORD error);
[[nodiscard]] bool MeansComPortInUse(DWORD error);

// A serial line: 8 data bits, one stop bit, no flow control. Every function but Open throws
// ComLineLost.
class ComLine {
 public:
  enum class Parity { None, Odd, Even };

  struct Reception {
    Bytes Received{};      // empty: nothing came in the given time
    bool Damaged = false;  // a byte of it came with a wrong parity or without its stop bit
  };

  // port: "COM3", UTF-8. The line is this program's alone, at 9600 bits a second without parity,
  // DTR and RTS on, with nothing left in its buffers.
  [[nodiscard]] static OpenedComLine Open(const std::string& port);

  // Bits a second. A device that does not know the setting (a virtual port) keeps its own.
  void SetSettings(std::int32_t baud, Parity parity);
  // A device without modem lines lets them be set and tells none.
  void SetDtr(bool on);
  void SetRts(bool on);
  [[nodiscard]] bool ReadDsr();

  // Forgets what has come, and what has not yet left.
  void DiscardInput();
  void DiscardAll();

  // Returns when the driver has taken everything; a driver that does not within the time is lost.
  void Write(ByteView bytes, std::chrono::milliseconds longest);
  // Returns with what has come, at once where something has, or after the given time; 0 does not
  // wait.
  [[nodiscard]] Reception Read(std::chrono::milliseconds longest);

 private:
  explicit ComLine(Handle line) : line_(std::move(line)) {}

  void SetReadTime(std::chrono::milliseconds longest);
  // Asks the driver for the state of the line, and keeps whether a byte was damaged.
  COMSTAT TakeState();
  void ThrowWhereLost() { (void)TakeState(); }
  [[nodiscard]] std::size_t ReadInto(Bytes& bytes, std::size_t longest);

  Handle line_;
  COMMTIMEOUTS times_{};
  bool isDtrOn_ = true;
  bool isRtsOn_ = true;
  // Until the bytes of that time are read or forgotten.
  bool isDamaged_ = false;
};

}  // namespace ctapi
