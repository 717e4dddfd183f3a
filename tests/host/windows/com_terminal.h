#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

#include "host/block_terminal.h"
#include "protocol/windows/com_line.h"

namespace ctapi::test {

// A card terminal at the far end of a serial line, in a thread of its own.
class ComTerminal {
 public:
  // Throws std::runtime_error where the port cannot be opened.
  ComTerminal(BlockTerminal::Execute execute, const std::string& port);
  ~ComTerminal();
  ComTerminal(const ComTerminal&) = delete;
  ComTerminal& operator=(const ComTerminal&) = delete;

  // Takes everything and answers nothing.
  void BeSilent() { isSilent_ = true; }
  // The commands carried out so far.
  [[nodiscard]] std::vector<BlockTerminal::Bytes> Executed() const;

 private:
  void Run();

  BlockTerminal terminal_;
  std::unique_ptr<ComLine> line_;
  std::atomic<bool> isOver_ = false;
  std::atomic<bool> isSilent_ = false;
  mutable std::mutex mutex_;
  std::thread thread_;
};

}  // namespace ctapi::test
