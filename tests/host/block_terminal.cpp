#include "host/block_terminal.h"

#include <algorithm>

namespace ctapi::test {

namespace {

std::uint8_t Xor(std::span<const std::uint8_t> bytes) {
  std::uint8_t sum = 0;
  for (const std::uint8_t byte : bytes) sum = static_cast<std::uint8_t>(sum ^ byte);
  return sum;
}

// PCB: I-blocks have bit 8 clear, R-blocks have 10 in the upper bits, S-blocks 11.
bool IsInformation(std::uint8_t control) {
  return (control & 0x80) == 0;
}
bool IsReceipt(std::uint8_t control) {
  return (control & 0xC0) == 0x80;
}
bool IsRequest(std::uint8_t control) {
  return (control & 0xE0) == 0xC0;
}

constexpr std::uint8_t ParityError = 1;
constexpr std::uint8_t OtherError = 2;
constexpr std::uint8_t AbortRequest = 0xC2;
constexpr std::uint8_t MoreBit = 0x20;

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
  return OnInvalid(OtherError);
}

BlockTerminal::Bytes BlockTerminal::OnBlock() {
  const std::size_t length = received_[2];
  const Bytes block(received_.begin(), received_.begin() + static_cast<long>(length) + 4);
  if (Xor(block) != 0) return OnInvalid(ParityError);
  if (block[0] != 0x12 && block[0] != 0x02) return OnInvalid(OtherError);
  unit_ = block[0] >> 4;
  const std::uint8_t control = block[1];
  const ByteView information = ByteView(block).subspan(3, length);
  if (IsInformation(control)) return OnInformation(control, information);
  if (IsReceipt(control)) return OnReceipt(control);
  return OnSupervisory(control, information);
}

// Rule 2.1 and 2.2: an I-block in sequence acknowledges the last one; inside a chain it is
// acknowledged by R(N(S) + 1), at its end by the answer.
BlockTerminal::Bytes BlockTerminal::OnInformation(std::uint8_t control, ByteView information) {
  Sequence& here = Here();
  const bool isInSequence = ((control & 0x40) != 0) == here.Expected;
  const bool isInPlace = !IsInsideItsChain() && !(here.Last && IsRequest(here.Last->Control));
  if (!isInSequence || !isInPlace || information.size() > manners_.BlockSize) {
    return OnInvalid(OtherError);
  }
  here.Expected = !here.Expected;
  here.Command.insert(here.Command.end(), information.begin(), information.end());
  if ((control & MoreBit) != 0) {
    return manners_.AbortsCommands ? Say(AbortRequest, {}) : Receipt(0);
  }
  executed_.push_back(here.Command);
  here.Answer = execute_(static_cast<int>(unit_), here.Command);
  here.Command.clear();
  delaysLeft_ = manners_.Extensions;
  return AnswerOrDelay();
}

BlockTerminal::Bytes BlockTerminal::AnswerOrDelay() {
  if (manners_.AskForBlockSize && !askedForBlockSize_) {
    askedForBlockSize_ = true;
    manners_.BlockSize = *manners_.AskForBlockSize;
    return Say(0xC1, Bytes{*manners_.AskForBlockSize});
  }
  if (delaysLeft_ > 0) {
    --delaysLeft_;
    return Say(0xC3, Bytes{manners_.Multiplier});
  }
  if (manners_.AbortsAnswers) return Say(AbortRequest, {});
  return Piece();
}

BlockTerminal::Bytes BlockTerminal::Piece() {
  Sequence& here = Here();
  const auto length = static_cast<long>(std::min(hostBlockSize_, here.Answer.size()));
  const Bytes piece(here.Answer.begin(), here.Answer.begin() + length);
  here.Answer.erase(here.Answer.begin(), here.Answer.begin() + length);
  const int control = (here.Next ? 0x40 : 0) | (here.Answer.empty() ? 0 : MoreBit);
  here.Next = !here.Next;
  here.LastInformation = Content{static_cast<std::uint8_t>(control), piece};
  return Say(here.LastInformation->Control, piece);
}

// Rule 7.1: R(n) asks for the I-block with N(S) = n: for the last one again or, inside a chain, for
// the next one.
BlockTerminal::Bytes BlockTerminal::OnReceipt(std::uint8_t control) {
  const Sequence& here = Here();
  if (here.Last && IsRequest(here.Last->Control)) return OnInvalid(OtherError);
  const bool asked = (control & 0x10) != 0;
  const bool last = !here.Next;
  if (here.LastInformation && asked == last) {
    const Content again = *here.LastInformation;
    return Say(again.Control, again.Information);
  }
  if (IsInsideItsChain()) return Piece();
  return OnInvalid(OtherError);
}

BlockTerminal::Bytes BlockTerminal::OnSupervisory(std::uint8_t control, ByteView information) {
  switch (control) {
    case 0xC0:
      return OnResynch();
    case 0xC1:
      if (manners_.OnBlockSize == BlockSizeManner::IsSilent) return {};
      if (manners_.OnBlockSize == BlockSizeManner::Refuses) return Receipt(OtherError);
      if (information.size() != 1 || information[0] == 0 || information[0] == 0xFF) break;
      hostBlockSize_ = information[0];
      return Say(0xE1, information);
    case 0xE1:
    case 0xE3:
      if (Awaits(control)) return AnswerOrDelay();
      break;
    case 0xE2:
      if (Awaits(control)) return AfterAbort();
      break;
    default:
      break;
  }
  return OnInvalid(OtherError);
}

BlockTerminal::Bytes BlockTerminal::OnResynch() {
  if (unit_ == 0 && !manners_.AnswersCardsResynch) return {};
  ++resynchronisations_;
  Here() = {};
  if (manners_.ResynchConcernsCard) sequences_[0] = {};
  hostBlockSize_ = 32;
  return Say(0xE0, {});
}

// Rule 9: whoever asked for the abort gives the turn back, if need be, by an R-block.
BlockTerminal::Bytes BlockTerminal::AfterAbort() {
  Here().Command.clear();
  Here().Answer.clear();
  Here().Last.reset();
  Here().LastInformation.reset();
  return manners_.GivesTurnBack ? Receipt(0) : Bytes{};
}

// Rules 7.1 and 7.3: behind an I-block or a response, an R-block asks for the expected I-block.
// Rules 7.2 and 7.4: an R-block and a request are repeated.
BlockTerminal::Bytes BlockTerminal::OnInvalid(std::uint8_t error) {
  const std::optional<Content> last = Here().Last;
  if (last && (IsReceipt(last->Control) || IsRequest(last->Control))) {
    return Say(last->Control, last->Information);
  }
  return Receipt(error);
}

BlockTerminal::Bytes BlockTerminal::Receipt(std::uint8_t error) {
  const int number = Here().Expected ? 0x10 : 0;
  return Say(static_cast<std::uint8_t>(0x80 | number | (manners_.NamesErrors ? error : 0)), {});
}

bool BlockTerminal::Awaits(std::uint8_t response) const {
  return Here().Last && (Here().Last->Control | 0x20) == response &&
         IsRequest(Here().Last->Control);
}

bool BlockTerminal::IsInsideItsChain() const {
  return Here().LastInformation && (Here().LastInformation->Control & MoreBit) != 0;
}

BlockTerminal::Bytes BlockTerminal::Say(std::uint8_t control, ByteView information) {
  Here().Last = Content{control, Bytes(information.begin(), information.end())};
  Bytes block{static_cast<std::uint8_t>(0x20 | unit_), control,
              static_cast<std::uint8_t>(information.size())};
  block.insert(block.end(), information.begin(), information.end());
  block.push_back(Xor(block));
  return block;
}

}  // namespace ctapi::test
