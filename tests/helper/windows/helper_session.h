#pragma once

#include <optional>
#include <string>
#include <vector>

#include "helper/message.h"
#include "protocol/windows/handle.h"

namespace ctapi::helper::test {

// The built helper as the program starts it: with a pipe at each end.
class HelperSession {
 public:
  explicit HelperSession(const std::vector<std::string>& candidates);
  ~HelperSession();
  HelperSession(const HelperSession&) = delete;
  HelperSession& operator=(const HelperSession&) = delete;

  void Send(const Message& call) const;
  // The next message. Nothing where the helper has ended or says none within ten seconds.
  [[nodiscard]] std::optional<Message> Receive();
  [[nodiscard]] std::optional<Message> Ask(const Message& call) {
    Send(call);
    return Receive();
  }

  // As the program does at its end.
  void CloseChannel() { input_ = Handle(); }
  // With what the process has ended; nothing where it goes on for longer than five seconds.
  [[nodiscard]] std::optional<DWORD> ExitCode() const;
  [[nodiscard]] HANDLE Process() const { return process_.Get(); }

 private:
  Handle process_;
  Handle input_;
  Handle output_;
};

}  // namespace ctapi::helper::test
