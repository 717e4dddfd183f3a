#include "host/block_protocol.h"

#include <algorithm>
#include <limits>

#include "host/repeatable_commands.h"

namespace ctapi::host {

namespace {

using std::chrono::milliseconds;

constexpr int FailuresBeforeResynch = 3;
constexpr int RequestAttempts = 3;
constexpr int MostStrays = 3;
// A terminal that keeps the host waiting, by one block after the other that brings nothing or by
// the time that it asks for, ends at last. No command takes longer than REQUEST ICC, with 255 s at
// most.
constexpr int MostExtensions = 600;
constexpr std::chrono::minutes LongestDialogue{10};
constexpr milliseconds ProbeWait{250};

constexpr std::uint8_t HostBlockSize = static_cast<std::uint8_t>(LargestInformation);
constexpr std::size_t LongestResponse = std::numeric_limits<std::uint16_t>::max();

// A damaged block is over when the line is silent for this long; more than this is noise that does
// not end.
constexpr milliseconds EndOfNoise{100};
constexpr std::size_t MostNoise = 1024;  // bytes
constexpr milliseconds LongestNoise{500};

Block InformationBlock(Unit unit, bool number, bool more, ByteView information) {
  const int control = (number ? pcb::SendNumber : 0) | (more ? pcb::More : 0);
  return {NadTo(unit), static_cast<std::uint8_t>(control),
          Bytes(information.begin(), information.end())};
}

Block ReceiptBlock(Unit unit, bool number, BlockError error) {
  const int control =
      pcb::Receipt | (number ? pcb::ReceiveNumber : 0) | static_cast<std::uint8_t>(error);
  return {NadTo(unit), static_cast<std::uint8_t>(control)};
}

Block ResponseTo(const Block& request, Unit unit) {
  return {NadTo(unit), static_cast<std::uint8_t>(request.Pcb | pcb::Response), request.Information};
}

// The wait for the block behind this one: a terminal asks for multiples of the usual one.
milliseconds WaitBehind(const Block& sent) {
  const bool grantsTime = sent.Pcb == (pcb::WaitingTime | pcb::Response);
  return BlockProtocol::BlockWait * (grantsTime ? std::max<int>(1, sent.Information[0]) : 1);
}

bool IsResponse(const Block& block) {
  return block.Kind() == BlockKind::Supervisory && (block.Pcb & pcb::Response) != 0;
}

bool IsValidBlockSize(const Block& request) {
  return request.Information[0] >= 1 && request.Information[0] <= LargestInformation;
}

// The framing admits no third sender.
Unit SenderOf(const Block& block) {
  return block.Nad == NadFrom(Unit::Card) ? Unit::Card : Unit::Terminal;
}

}  // namespace

// One command and its answer, as far as they have come.
struct BlockProtocol::Dialogue {
  Unit With;
  ByteView Unsent;  // of the command, behind the piece in LastPiece
  Bytes& Response;
  Block LastPiece{};          // the last I-block sent
  bool Acknowledged = false;  // whether the other side has it
  bool HasBegun = false;      // whether it has any piece
  Block LastSent{};
  std::chrono::steady_clock::time_point Begin;
  int Failures = 0;              // blocks in a row that were no use
  int Repetitions = 0;           // in a row, asked for by the other side
  int Extensions = 0;            // blocks that brought nothing
  int Strays = 0;                // blocks that belong to something earlier
  bool CountsOtherwise = false;  // an I-block came with another number than the expected one

  void EndFailures() { Failures = Repetitions = 0; }
  [[nodiscard]] bool TakesTooLong(std::chrono::steady_clock::time_point next) {
    return ++Extensions > MostExtensions || next - Begin > LongestDialogue;
  }
  [[nodiscard]] Step Fail() const { return Unsent.empty() ? Step::Failed : Step::Incomplete; }
};

milliseconds BlockProtocol::CharacterWait(std::int32_t baud) {
  constexpr std::int64_t BitTimes = 8203;
  constexpr milliseconds Least{200};
  return std::max(Least, milliseconds(BitTimes * 1000 / baud));
}

bool BlockProtocol::TryBaud(std::int32_t baud) {
  baud_ = baud;
  port_.SetBaud(baud);
  if (Request({NadTo(Unit::Terminal), pcb::Resynch}, 1, ProbeWait) != Reply::Granted) return false;
  ForgetNumbers(Unit::Terminal, true);
  takesAnnouncement_ = true;
  cardStartsAnew_.reset();
  return true;
}

bool BlockProtocol::AnnounceBlockSize() {
  if (!takesAnnouncement_) return true;
  const Block request{NadTo(Unit::Terminal), pcb::InformationSize, {HostBlockSize}};
  if (Request(request, RequestAttempts, ProbeWait) != Reply::None) return true;
  takesAnnouncement_ = false;
  // Rule 7.4: after three requests in vain the line is started anew, which sets the default sizes.
  return Request({NadTo(Unit::Terminal), pcb::Resynch}, RequestAttempts, BlockWait) ==
         Reply::Granted;
}

BlockProtocol::Outcome BlockProtocol::Exchange(Unit unit, ByteView command, Bytes& response) try {
  TurnTo(unit);
  // With numbers that are a guess, a chain's first R-block may be a receipt or a refusal, and an
  // answer that came damaged cannot be asked for. A command that bears neither waits for a new
  // start.
  const bool bearsAGuess = MayBeRepeated(unit, command) && command.size() <= BlockSizeOf(unit);
  response.clear();
  if (!numbersAreAgreed_ && !bearsAGuess && !StartAnew(unit)) return Outcome::Silent;
  for (bool repeated = false;; repeated = true) {
    const Step result = Attempt(unit, command, response);
    if (result == Step::Answered) return Outcome::Answered;
    response.clear();
    if (result == Step::Aborted) return Outcome::Broken;
    if (!StartAnew(unit)) return Outcome::Silent;
    if (result == Step::TooLong) return Outcome::TooLong;
    const bool mayGoAgain = result == Step::Incomplete || MayBeRepeated(unit, command);
    if (repeated || !mayGoAgain) return Outcome::Broken;
  }
} catch (const LineLost&) {
  response.clear();
  return Outcome::Silent;
}

void BlockProtocol::TurnTo(Unit unit) {
  if (unit == unit_) return;
  unit_ = unit;
  numbersAreAgreed_ = false;
  if (!countsTheLine_) std::swap(numbers_, numbersOfTheOther_);
}

BlockProtocol::Step BlockProtocol::Attempt(Unit unit, ByteView command, Bytes& response) {
  Dialogue dialogue{.With = unit, .Unsent = command, .Response = response, .Begin = port_.Now()};
  SendPiece(dialogue);
  Step step = Step::GoOn;
  while (step == Step::GoOn) {
    step = Take(dialogue, ReceiveBlock(WaitBehind(dialogue.LastSent)));
  }
  return step;
}

BlockProtocol::Step BlockProtocol::Take(Dialogue& dialogue, const FramedBlock& received) {
  const Block& block = received.Found;
  if (dialogue.LastSent.Pcb == (pcb::Abort | pcb::Response)) return AfterAbort(dialogue, received);
  if (received.State != Framing::Complete) return OnFailure(dialogue, received.Error);
  if (block.Nad != NadFrom(dialogue.With)) return OnStray(dialogue);
  if (block.Kind() == BlockKind::Information) return OnInformation(dialogue, block);
  if (block.Kind() == BlockKind::Receipt) return OnReceipt(dialogue, block);
  return OnSupervisory(dialogue, block);
}

void BlockProtocol::SendPiece(Dialogue& dialogue) {
  const std::size_t length = std::min(BlockSizeOf(dialogue.With), dialogue.Unsent.size());
  const ByteView piece = dialogue.Unsent.first(length);
  dialogue.Unsent = dialogue.Unsent.subspan(length);
  dialogue.LastPiece =
      InformationBlock(dialogue.With, numbers_.Send, !dialogue.Unsent.empty(), piece);
  dialogue.Acknowledged = false;
  Send(dialogue, dialogue.LastPiece);
}

void BlockProtocol::Send(Dialogue& dialogue, const Block& block) {
  dialogue.LastSent = block;
  port_.DiscardInput();
  port_.Send(Encode(block));
}

// Asks for the expected block once more (rule 7.1). A receipt that stands last is repeated as it
// was (7.2), and so is a request (7.4, in Request). A response of ours is not: rule 7.3 asks for a
// receipt there. It serves in both cases: a terminal that missed the response asks again, one that
// has it repeats its answer, to which a second response would be no reply.
//
// Where the numbers are a guess, the block that such a receipt asks for may be an earlier answer or
// the next piece of this one.
BlockProtocol::Step BlockProtocol::OnFailure(Dialogue& dialogue, BlockError error) {
  if (!numbersAreAgreed_ || dialogue.CountsOtherwise) return dialogue.Fail();
  if (++dialogue.Failures >= FailuresBeforeResynch) return dialogue.Fail();
  if (dialogue.LastSent.Kind() == BlockKind::Receipt) {
    Send(dialogue, Block(dialogue.LastSent));
  } else {
    Send(dialogue, ReceiptBlock(dialogue.With, numbers_.Expected, error));
  }
  return Step::GoOn;
}

// The reply to something earlier, come late: that to the last block is still to come.
BlockProtocol::Step BlockProtocol::OnStray(Dialogue& dialogue) {
  return ++dialogue.Strays > MostStrays ? dialogue.Fail() : Step::GoOn;
}

// Rule 2.1: an I-block acknowledges a whole command, and one out of sequence is never answered with
// another. So the first I-block behind a command is its answer, and where the numbers are a guess,
// its number is the one to count on from.
BlockProtocol::Step BlockProtocol::OnInformation(Dialogue& dialogue, const Block& block) {
  if (!dialogue.Unsent.empty()) return OnFailure(dialogue, BlockError::Other);
  if (!numbersAreAgreed_) numbers_.Expected = block.Number();
  if (block.Number() != numbers_.Expected) {
    if (dialogue.LastSent.Kind() == BlockKind::Receipt) {
      return OnFailure(dialogue, BlockError::Other);
    }
    dialogue.CountsOtherwise = true;
    return OnStray(dialogue);
  }
  Acknowledge(dialogue);
  numbersAreAgreed_ = true;
  dialogue.CountsOtherwise = false;
  numbers_.Expected = !numbers_.Expected;
  dialogue.EndFailures();
  dialogue.Response.insert(dialogue.Response.end(), block.Information.begin(),
                           block.Information.end());
  if (dialogue.Response.size() > LongestResponse) return Step::TooLong;
  if (!block.HasMore()) return Step::Answered;
  if (block.Information.empty() && dialogue.TakesTooLong(port_.Now())) return Step::Failed;
  Send(dialogue, ReceiptBlock(dialogue.With, numbers_.Expected, BlockError::None));
  return Step::GoOn;
}

void BlockProtocol::Acknowledge(Dialogue& dialogue) {
  if (dialogue.Acknowledged) return;
  dialogue.Acknowledged = dialogue.HasBegun = true;
  numbers_.Send = !numbers_.Send;
}

BlockProtocol::Step BlockProtocol::OnReceipt(Dialogue& dialogue, const Block& block) {
  const bool missesResponse = IsResponse(dialogue.LastSent) && block.ReportsError();
  if (dialogue.Acknowledged || missesResponse) return Repeat(dialogue, Block(dialogue.LastSent));
  // Rule 7.1: it expects the number of our piece, so it has not got it.
  if (block.Number() == numbers_.Send) return Repeat(dialogue, Block(dialogue.LastPiece));
  if (!dialogue.Unsent.empty()) {
    // A receipt inside a chain carries no error (rule 2.2); a first piece that is complained of was
    // refused.
    if (!dialogue.HasBegun && block.ReportsError()) return dialogue.Fail();
    Acknowledge(dialogue);
    dialogue.EndFailures();
    SendPiece(dialogue);
    return Step::GoOn;
  }
  if (dialogue.LastSent.Kind() == BlockKind::Information) return OnRefusal(dialogue);
  return Repeat(dialogue, Block(dialogue.LastSent));
}

// A whole command is answered and not acknowledged: an R-block of the other number that follows it
// at once comes from a terminal that counts otherwise and has refused it as out of sequence. It
// cannot have carried it out: one that had would have answered, and the block was sent before only
// where the terminal asked for it. What it asks for now is the number it counts.
BlockProtocol::Step BlockProtocol::OnRefusal(Dialogue& dialogue) {
  if (dialogue.HasBegun) return Step::Failed;
  if (!numbersAreAgreed_) countsTheLine_ = !countsTheLine_;
  numbersAreAgreed_ = false;
  numbers_.Send = !numbers_.Send;
  dialogue.LastPiece.Pcb ^= pcb::SendNumber;
  return Repeat(dialogue, Block(dialogue.LastPiece));
}

BlockProtocol::Step BlockProtocol::Repeat(Dialogue& dialogue, const Block& block) {
  if (++dialogue.Repetitions >= FailuresBeforeResynch) return dialogue.Fail();
  Send(dialogue, block);
  return Step::GoOn;
}

BlockProtocol::Step BlockProtocol::OnSupervisory(Dialogue& dialogue, const Block& block) {
  const Block response = ResponseTo(block, dialogue.With);
  switch (block.Pcb) {
    case pcb::WaitingTime:
      break;
    case pcb::InformationSize:
      if (!IsValidBlockSize(block)) return OnFailure(dialogue, BlockError::Other);
      BlockSizeOf(dialogue.With) = block.Information[0];
      break;
    case pcb::Abort:
      Acknowledge(dialogue);
      break;
    default:
      // A terminal that repeats an old response when asked for its last block has not got ours.
      if (dialogue.LastSent.Kind() == BlockKind::Receipt && !dialogue.Acknowledged) {
        return Repeat(dialogue, Block(dialogue.LastPiece));
      }
      return IsResponse(block) ? OnStray(dialogue) : OnFailure(dialogue, BlockError::Other);
  }
  if (dialogue.TakesTooLong(port_.Now() + WaitBehind(response))) return Step::Failed;
  dialogue.EndFailures();
  Send(dialogue, response);
  return Step::GoOn;
}

// Rule 9: the R-block behind S(ABORT response) gives the turn back, and tells the number that is
// expected. A terminal that sends none leaves the numbers a guess.
BlockProtocol::Step BlockProtocol::AfterAbort(Dialogue& dialogue, const FramedBlock& received) {
  const Block& block = received.Found;
  const bool isWhole = received.State == Framing::Complete && block.Nad == NadFrom(dialogue.With);
  if (isWhole && block.Pcb == pcb::Abort) return OnSupervisory(dialogue, block);
  if (isWhole && block.Kind() == BlockKind::Receipt) {
    numbers_.Send = block.Number();
  } else {
    numbersAreAgreed_ = false;
  }
  return Step::Aborted;
}

FramedBlock BlockProtocol::ReceiveBlock(milliseconds wait) {
  Bytes received;
  FramedBlock framed;
  bool damaged = false;
  while (framed.State == Framing::NeedMore && !damaged) {
    const LinePort::Reception more = port_.Receive(received.empty() ? wait : CharacterWait(baud_));
    if (more.Received.empty() && !more.Damaged) {
      return {.State = Framing::Invalid, .Error = BlockError::Other};
    }
    damaged = more.Damaged;
    received.insert(received.end(), more.Received.begin(), more.Received.end());
    framed = ReadBlock(received);
  }
  if (framed.State == Framing::Complete && !damaged) return framed;
  std::size_t noise = received.size();
  const auto end = port_.Now() + LongestNoise;
  while (noise < MostNoise && port_.Now() < end) {
    const LinePort::Reception more = port_.Receive(EndOfNoise);
    if (more.Received.empty() && !more.Damaged) break;
    noise += more.Received.size() + 1;
  }
  return {.State = Framing::Invalid, .Error = damaged ? BlockError::Check : framed.Error};
}

BlockProtocol::Reply BlockProtocol::Request(const Block& request, int attempts, milliseconds wait) {
  const Unit unit = request.Nad == NadTo(Unit::Card) ? Unit::Card : Unit::Terminal;
  const Block wanted{NadFrom(unit), static_cast<std::uint8_t>(request.Pcb | pcb::Response),
                     request.Information};
  Reply reply = Reply::None;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    port_.DiscardInput();
    port_.Send(Encode(request));
    FramedBlock received = ReceiveBlock(wait);
    // The terminal may have a request of its own first.
    for (int i = 0; i < RequestAttempts && received.State == Framing::Complete &&
                    received.Found.Pcb == pcb::InformationSize && IsValidBlockSize(received.Found);
         ++i) {
      BlockSizeOf(SenderOf(received.Found)) = received.Found.Information[0];
      port_.Send(Encode(ResponseTo(received.Found, SenderOf(received.Found))));
      received = ReceiveBlock(wait);
    }
    if (received.State != Framing::Complete) continue;
    const Block& block = received.Found;
    if (block.Nad == wanted.Nad && block.Pcb == wanted.Pcb &&
        block.Information == wanted.Information) {
      return Reply::Granted;
    }
    reply = Reply::Refused;
  }
  return reply;
}

// A new start for the whole line. Terminals differ in whether it concerns the card's numbers too,
// so these are agreed on only where the card's address starts anew itself.
bool BlockProtocol::StartAnew(Unit unit) {
  const Block resynch{NadTo(Unit::Terminal), pcb::Resynch};
  if (Request(resynch, RequestAttempts, BlockWait) != Reply::Granted) return false;
  const Reply ofUnit = unit == Unit::Card ? StartCardAnew() : Reply::Granted;
  if (ofUnit == Reply::None) return false;
  ForgetNumbers(unit, ofUnit == Reply::Granted);
  return AnnounceBlockSize();
}

// Refused: the card's address has never answered a new start. None: it has, and does no longer.
BlockProtocol::Reply BlockProtocol::StartCardAnew() {
  if (cardStartsAnew_ == false) return Reply::Refused;
  const Block resynch{NadTo(Unit::Card), pcb::Resynch};
  const bool starts = Request(resynch, RequestAttempts, ProbeWait) == Reply::Granted;
  if (!starts && cardStartsAnew_ == true) return Reply::None;
  cardStartsAnew_ = starts;
  return starts ? Reply::Granted : Reply::Refused;
}

void BlockProtocol::ForgetNumbers(Unit agreedWith, bool areAgreed) {
  unit_ = agreedWith;
  numbers_ = numbersOfTheOther_ = {};
  numbersAreAgreed_ = areAgreed;
  blockSizes_.fill(DefaultBlockSize);
}

}  // namespace ctapi::host
