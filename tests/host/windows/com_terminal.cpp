#include "host/windows/com_terminal.h"

#include <stdexcept>

namespace ctapi::test {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds CharacterWait{100};  // the host's pieces come without pauses

}  // namespace

ComTerminal::ComTerminal(BlockTerminal::Execute execute, const std::string& port)
    : terminal_(std::move(execute)) {
  OpenedComLine opened = ComLine::Open(port);
  if (opened.Error != ERROR_SUCCESS) throw std::runtime_error("no port " + port);
  line_ = std::move(opened.Line);
  line_->SetSettings(9600, ComLine::Parity::Even);
  thread_ = std::thread([this] { Run(); });
}

ComTerminal::~ComTerminal() {
  isOver_ = true;
  thread_.join();
}

std::vector<BlockTerminal::Bytes> ComTerminal::Executed() const {
  const std::lock_guard lock(mutex_);
  return terminal_.Executed();
}

void ComTerminal::Run() {
  bool waitsForMore = false;
  while (!isOver_) {
    const Bytes received = line_->Read(CharacterWait).Received;
    if (isSilent_ || (received.empty() && !waitsForMore)) continue;
    BlockTerminal::Bytes answer;
    {
      const std::lock_guard lock(mutex_);
      answer = received.empty() ? terminal_.TakeSilence() : terminal_.Take(received);
    }
    waitsForMore = !received.empty() && answer.empty();
    if (!answer.empty()) line_->Write(answer, milliseconds(1000));
  }
}

}  // namespace ctapi::test
