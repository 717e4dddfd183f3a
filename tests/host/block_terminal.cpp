#include "host/block_terminal.h"

#include <algorithm>

namespace ctapi::test {

namespace {

std::uint8_t Xor(std::span<const std::uint8_t> bytes) {
  std::uint8_t sum = 0;
  for (const std::uint8_t byte : bytes) sum = static_cast<std::uint8_t>(sum ^ byte);
  return sum;
}

bool IsInformation(const std::vector<std::uint8_t>& block) {
  return block.size() > 1 && (block[1] & 0x80) == 0;
}

}  // namespace

BlockTerminal::Bytes BlockTerminal::Take(ByteView bytes) {
  received_.insert(received_.end(), bytes.begin(), bytes.end());
  while (received_.size() >= 3 && received_.size() >= received_[2] + std::size_t{4}) {
    const std::size_t length = received_[2] + std::size_t{4};
    Bytes answer = OnBlock();
    received_.erase(received_.begin(), received_.begin() + static_cast<long>(length));
    if (answer.empty()) continue;  // nothing to say to this block
    received_.clear();
    return answer;
  }
  return {};
}

BlockTerminal::Bytes BlockTerminal::TakeSilence() {
  if (received_.empty()) return {};
  received_.clear();
  return Complain(2);
}

BlockTerminal::Bytes BlockTerminal::OnBlock() {
  const std::size_t length = received_[2];
  const Bytes block(received_.begin(), received_.begin() + static_cast<long>(length) + 4);
  if (Xor(block) != 0) return Complain(1);
  if (block[0] != 0x12 && block[0] != 0x02) return Complain(2);
  unit_ = block[0] >> 4;
  const std::uint8_t control = block[1];
  const ByteView information = ByteView(block).subspan(3, length);
  if ((control & 0x80) == 0) return OnInformation(Here(), control, information);
  if ((control & 0x40) == 0) return OnReceipt(Here(), control);
  return OnSupervisory(Here(), control, information);
}

BlockTerminal::Bytes BlockTerminal::OnInformation(Side& side, std::uint8_t control,
                                                  ByteView information) {
  if (((control & 0x40) != 0) != side.Expected || information.size() > manners_.BlockSize) {
    return Complain(2);
  }
  side.Expected = !side.Expected;
  if (side.Unacknowledged) {
    side.Unacknowledged = false;
    side.Number = !side.Number;
  }
  side.Command.insert(side.Command.end(), information.begin(), information.end());
  if ((control & 0x20) != 0) return Make(side.Expected ? 0x90 : 0x80, {});
  executed_.push_back(side.Command);
  side.Answer = execute_(static_cast<int>(unit_), side.Command);
  side.Command.clear();
  delaysLeft_ = manners_.Extensions;
  return AnswerOrDelay(side);
}

BlockTerminal::Bytes BlockTerminal::AnswerOrDelay(Side& side) {
  if (manners_.AskForBlockSize && !askedForBlockSize_) {
    askedForBlockSize_ = true;
    manners_.BlockSize = *manners_.AskForBlockSize;
    return Make(0xC1, Bytes{*manners_.AskForBlockSize});
  }
  if (delaysLeft_ > 0) {
    --delaysLeft_;
    return Make(0xC3, Bytes{manners_.Multiplier});
  }
  if (manners_.AbortsAnswers) return Make(0xC2, {});
  return Piece(side);
}

BlockTerminal::Bytes BlockTerminal::Piece(Side& side) {
  const auto length = static_cast<long>(std::min(hostBlockSize_, side.Answer.size()));
  const Bytes piece(side.Answer.begin(), side.Answer.begin() + length);
  side.Answer.erase(side.Answer.begin(), side.Answer.begin() + length);
  side.Unacknowledged = true;
  const int control = (side.Number ? 0x40 : 0) | (side.Answer.empty() ? 0 : 0x20);
  side.LastInformation = Make(static_cast<std::uint8_t>(control), piece);
  return side.LastInformation;
}

BlockTerminal::Bytes BlockTerminal::OnReceipt(Side& side, std::uint8_t control) {
  const bool number = (control & 0x10) != 0;
  if (side.Unacknowledged && number == side.Number) {
    side.LastSent = side.LastInformation;
    return side.LastSent;
  }
  if (side.Unacknowledged && !side.Answer.empty()) {
    side.Number = !side.Number;
    return Piece(side);
  }
  if (!side.LastSent.empty() && !IsInformation(side.LastSent)) return side.LastSent;
  return Complain(2);
}

BlockTerminal::Bytes BlockTerminal::OnSupervisory(Side& side, std::uint8_t control,
                                                  ByteView information) {
  switch (control) {
    case 0xC0:
      ++resynchronisations_;
      if (unit_ == 0 || manners_.ResynchConcernsCard) sides_[0] = {};
      if (unit_ == 1) sides_[1] = {};
      hostBlockSize_ = 32;
      return Make(0xE0, {});
    case 0xC1:
      if (manners_.RefusesBlockSize) return Complain(2);
      hostBlockSize_ = information[0];
      return Make(0xE1, information);
    case 0xE1:
    case 0xE3:
      return AnswerOrDelay(side);
    case 0xE2:
      side.Answer.clear();
      side.LastSent.clear();
      return {};
    default:
      return Complain(2);
  }
}

// Asks for the expected block; a request of its own that stands last is repeated instead.
BlockTerminal::Bytes BlockTerminal::Complain(std::uint8_t error) {
  const bool hasRequest =
      Here().LastSent.size() > 1 && Here().LastSent[1] >= 0xC0 && (Here().LastSent[1] & 0x20) == 0;
  if (hasRequest) return Here().LastSent;
  return Make(static_cast<std::uint8_t>((Here().Expected ? 0x90 : 0x80) | error), {});
}

BlockTerminal::Bytes BlockTerminal::Make(std::uint8_t control, ByteView information) {
  Bytes block;
  block.reserve(information.size() + 4);
  block = {static_cast<std::uint8_t>(0x20 | unit_), control,
           static_cast<std::uint8_t>(information.size())};
  block.insert(block.end(), information.begin(), information.end());
  block.push_back(Xor(block));
  Here().LastSent = block;
  return block;
}

}  // namespace ctapi::test
