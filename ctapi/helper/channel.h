#pragma once

#include "helper/message.h"

namespace ctapi::helper {

// The helper's end of the pipes to the program. They are what the process was started with as its
// standard input and output; a library finds nothing there to read, and what it prints goes
// nowhere.
class Channel {
 public:
  Channel();
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  // Waits for the program's next call. Nothing when the program has closed its end or is gone, or
  // when what came is no message.
  [[nodiscard]] std::optional<Message> Receive();

  // False where the program is gone.
  [[nodiscard]] bool Send(const Message& message);

 private:
  [[nodiscard]] bool ReadTo(Bytes& bytes, std::size_t length);

  int input_;
  int output_;
};

}  // namespace ctapi::helper
