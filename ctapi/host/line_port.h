#pragma once

#include <chrono>
#include <stdexcept>

#include "protocol/bytes.h"

namespace ctapi::host {

// The device behind a line is gone: unplugged, or its driver failed.
struct LineLost : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// An open serial line, and the only clock that the block protocol has. Every function but Now
// throws LineLost.
class LinePort {
 public:
  struct Reception {
    Bytes Received{};      // empty: the line was silent for the whole time
    bool Damaged = false;  // a byte of it came with a wrong parity or without its stop bit
  };

  virtual void Send(ByteView bytes) = 0;
  // Waits for the next bytes. The time begins when everything sent has left the line.
  [[nodiscard]] virtual Reception Receive(std::chrono::milliseconds longest) = 0;
  // Forgets what has come so far.
  virtual void DiscardInput() = 0;
  virtual void SetBaud(std::int32_t baud) = 0;  // bits a second
  [[nodiscard]] virtual std::chrono::steady_clock::time_point Now() const {
    return std::chrono::steady_clock::now();
  }

  virtual ~LinePort() = default;
  LinePort(const LinePort&) = delete;
  LinePort& operator=(const LinePort&) = delete;

 protected:
  LinePort() = default;
};

}  // namespace ctapi::host
