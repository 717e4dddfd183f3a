#pragma once

#include "host/block_protocol.h"
#include "host/terminal_link.h"

namespace ctapi::host {

// A terminal on a serial line.
class SerialLink final : public TerminalLink {
 public:
  // Looks for the terminal's rate, from 9600 to 115200 baud. -10: nothing answers, after at most
  // 1.5 s on a silent line.
  [[nodiscard]] static OpenedLink Open(std::unique_ptr<LinePort> line);

  [[nodiscard]] std::int8_t Exchange(Unit unit, ByteView command, Bytes& response) override;
  [[nodiscard]] std::optional<std::int32_t> Baud() const override { return baud_; }

 private:
  explicit SerialLink(std::unique_ptr<LinePort> line) : line_(std::move(line)), protocol_(*line_) {}
  [[nodiscard]] bool FindTerminal();

  std::unique_ptr<LinePort> line_;
  BlockProtocol protocol_;
  std::int32_t baud_ = 0;
  bool isLost_ = false;
};

}  // namespace ctapi::host
