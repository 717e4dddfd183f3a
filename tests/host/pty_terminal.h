#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "host/block_terminal.h"

namespace ctapi::test {

// What happens to one block on its way to the host.
struct LineFault {
  enum class Kind { None, Lost, FlippedBit, Late, GarbageBefore, Unplugged };
  Kind What = Kind::None;
  std::chrono::milliseconds Delay{0};  // Late
};

// A card terminal at one end of a pseudo-terminal pair, in a thread of its own. The other end is a
// device file as a serial port has one.
class PtyTerminal {
 public:
  struct Line {
    std::int32_t Baud = 9600;  // the only rate at which it answers
    BlockTerminal::Manners Manners{};
    // By the number of the block to the host, from 0 on: the answer to the baud search is 0, that
    // to the announcement of the block size 1.
    std::map<int, LineFault> Faults{};
    bool TakesLineTime = false;  // each byte takes the time that it takes on a line of this rate
    bool IsSilent = false;
  };

  PtyTerminal(BlockTerminal::Execute execute, Line line);
  ~PtyTerminal();
  PtyTerminal(const PtyTerminal&) = delete;
  PtyTerminal& operator=(const PtyTerminal&) = delete;

  [[nodiscard]] const std::string& Device() const { return device_; }
  // The commands carried out so far.
  [[nodiscard]] std::vector<BlockTerminal::Bytes> Executed() const;
  // Bytes in both directions, from the second block on, that is without the baud search.
  [[nodiscard]] std::size_t BytesOnTheLine() const;

 private:
  void Run();
  void Answer(BlockTerminal::Bytes block);
  void Write(const BlockTerminal::Bytes& bytes);
  void TakeTime(std::size_t bytes) const;
  void CloseBothEnds();
  [[nodiscard]] bool HostUsesTheRate() const;

  Line line_;
  BlockTerminal terminal_;
  std::string device_;
  int master_ = -1;
  int slave_ = -1;  // kept open, so that the pair outlives a host that closes its end
  int stop_ = -1;
  int blocks_ = 0;
  std::size_t bytes_ = 0;
  mutable std::mutex mutex_;
  std::thread thread_;
};

}  // namespace ctapi::test
