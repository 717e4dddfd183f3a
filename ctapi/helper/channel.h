#pragma once

#include <memory>

#include "helper/message.h"

namespace ctapi::helper {

// The helper's end of the pipes to the program. They are what the process was started with as its
// standard input and output; a library finds nothing there to read, and what it prints goes
// nowhere.
class Channel {
 public:
  Channel();
  ~Channel();
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  // Waits for the program's next call. Nothing when the program has closed its end or is gone, or
  // when what came is no message. On Windows the windows of the library are served meanwhile: they
  // belong to the thread that loads it and calls it.
  [[nodiscard]] std::optional<Message> Receive();

  // False where the program is gone.
  [[nodiscard]] bool Send(const Message& message);

 private:
  struct Ends;
  std::unique_ptr<Ends> ends_;
};

}  // namespace ctapi::helper
