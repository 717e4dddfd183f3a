#include "host/block_protocol.h"

#include <algorithm>
#include <limits>

#include "protocol/ct_bcs.h"
#include "protocol/iso7816.h"

namespace ctapi::host {

namespace {

using std::chrono::milliseconds;

constexpr int FailuresBeforeResynch = 3;
constexpr int RequestAttempts = 3;
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
  Block LastSent{};
  std::chrono::steady_clock::time_point Begin;
  int Failures = 0;     // blocks in a row that were no use
  int Repetitions = 0;  // in a row, asked for by the other side
  int Extensions = 0;   // blocks that brought nothing

  void EndFailures() { Failures = Repetitions = 0; }
  [[nodiscard]] bool TakesTooLong(std::chrono::steady_clock::time_point next) {
    return ++Extensions > MostExtensions || next - Begin > LongestDialogue;
  }
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
  peers_ = {};
  return true;
}

bool BlockProtocol::AnnounceBlockSize() {
  const Block request{NadTo(Unit::Terminal), pcb::InformationSize, {HostBlockSize}};
  return Request(request, RequestAttempts, BlockWait) != Reply::None;
}

BlockProtocol::Outcome BlockProtocol::Exchange(Unit unit, ByteView command, Bytes& response) try {
  for (bool repeated = false;; repeated = true) {
    response.clear();
    const Step result = Attempt(unit, command, response);
    if (result == Step::Answered) return Outcome::Answered;
    response.clear();
    if (result == Step::Aborted) return Outcome::Broken;
    if (!Recover(unit)) return Outcome::Silent;
    if (result == Step::TooLong) return Outcome::TooLong;
    if (repeated || !MayBeRepeated(unit, command)) return Outcome::Broken;
  }
} catch (const LineLost&) {
  response.clear();
  return Outcome::Silent;
}

BlockProtocol::Step BlockProtocol::Attempt(Unit unit, ByteView command, Bytes& response) {
  Dialogue dialogue{.With = unit, .Unsent = command, .Response = response, .Begin = port_.Now()};
  SendPiece(dialogue);
  Step step = Step::GoOn;
  while (step == Step::GoOn) {
    const FramedBlock received = ReceiveBlock(WaitBehind(dialogue.LastSent));
    const Block& block = received.Found;
    if (received.State != Framing::Complete) {
      step = OnFailure(dialogue, received.Error);
    } else if (block.Nad != NadFrom(unit)) {
      step = OnFailure(dialogue, BlockError::Other);
    } else if (block.Kind() == BlockKind::Information) {
      step = OnInformation(dialogue, block);
    } else if (block.Kind() == BlockKind::Receipt) {
      step = OnReceipt(dialogue, block);
    } else {
      step = OnSupervisory(dialogue, block);
    }
  }
  return step;
}

void BlockProtocol::SendPiece(Dialogue& dialogue) {
  const Peer& peer = PeerOf(dialogue.With);
  const std::size_t length = std::min(peer.BlockSize, dialogue.Unsent.size());
  const ByteView piece = dialogue.Unsent.first(length);
  dialogue.Unsent = dialogue.Unsent.subspan(length);
  dialogue.LastPiece =
      InformationBlock(dialogue.With, peer.SendNumber, !dialogue.Unsent.empty(), piece);
  dialogue.Acknowledged = false;
  Send(dialogue, dialogue.LastPiece);
}

void BlockProtocol::Send(Dialogue& dialogue, const Block& block) {
  dialogue.LastSent = block;
  port_.DiscardInput();
  port_.Send(Encode(block));
}

// Asks for the expected block once more. A receipt that stands last is repeated as it was, and so
// is a request (in Request). A response of ours is not: ISO 7816-3 (T=1, rule 7.3) asks for a
// receipt there. It serves in both cases: a terminal that missed the response asks again, one that
// has it repeats its answer, to which a second response would be no reply.
BlockProtocol::Step BlockProtocol::OnFailure(Dialogue& dialogue, BlockError error) {
  if (++dialogue.Failures >= FailuresBeforeResynch) return Step::Failed;
  if (dialogue.LastSent.Kind() == BlockKind::Receipt) {
    Send(dialogue, Block(dialogue.LastSent));
  } else {
    Send(dialogue, ReceiptBlock(dialogue.With, PeerOf(dialogue.With).ExpectedNumber, error));
  }
  return Step::GoOn;
}

BlockProtocol::Step BlockProtocol::OnInformation(Dialogue& dialogue, const Block& block) {
  Peer& peer = PeerOf(dialogue.With);
  if (block.Number() != peer.ExpectedNumber || !dialogue.Unsent.empty()) {
    return OnFailure(dialogue, BlockError::Other);
  }
  Acknowledge(dialogue);
  peer.ExpectedNumber = !peer.ExpectedNumber;
  dialogue.EndFailures();
  dialogue.Response.insert(dialogue.Response.end(), block.Information.begin(),
                           block.Information.end());
  if (dialogue.Response.size() > LongestResponse) return Step::TooLong;
  if (!block.HasMore()) return Step::Answered;
  if (block.Information.empty() && dialogue.TakesTooLong(port_.Now())) return Step::Failed;
  Send(dialogue, ReceiptBlock(dialogue.With, peer.ExpectedNumber, BlockError::None));
  return Step::GoOn;
}

void BlockProtocol::Acknowledge(Dialogue& dialogue) {
  if (dialogue.Acknowledged) return;
  dialogue.Acknowledged = true;
  Peer& peer = PeerOf(dialogue.With);
  peer.SendNumber = !peer.SendNumber;
}

BlockProtocol::Step BlockProtocol::OnReceipt(Dialogue& dialogue, const Block& block) {
  const Peer& peer = PeerOf(dialogue.With);
  const bool answersResponse = IsResponse(dialogue.LastSent) && block.ReportsError();
  const bool asksForPiece =
      !dialogue.Acknowledged && !answersResponse && block.Number() == peer.SendNumber;
  const bool acknowledges = !dialogue.Acknowledged && !answersResponse && !asksForPiece;
  if (acknowledges && !dialogue.Unsent.empty()) {
    Acknowledge(dialogue);
    dialogue.EndFailures();
    SendPiece(dialogue);
    return Step::GoOn;
  }
  if (!asksForPiece && dialogue.LastSent.Kind() == BlockKind::Information) {
    // A whole command is not acknowledged but answered. A terminal that kept the card's numbers
    // over a new start takes it for one that it has had, and would repeat an earlier response.
    return dialogue.With == Unit::Card ? Step::Failed : OnFailure(dialogue, BlockError::Other);
  }
  return Repeat(dialogue, asksForPiece ? Block(dialogue.LastPiece) : Block(dialogue.LastSent));
}

BlockProtocol::Step BlockProtocol::Repeat(Dialogue& dialogue, const Block& block) {
  if (++dialogue.Repetitions >= FailuresBeforeResynch) return Step::Failed;
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
      TakeBlockSize(block);
      break;
    case pcb::Abort:
      Acknowledge(dialogue);
      Send(dialogue, response);
      return Step::Aborted;
    default:
      // A terminal that repeats an old response when asked for its last block has not got ours.
      if (dialogue.LastSent.Kind() == BlockKind::Receipt && !dialogue.Acknowledged) {
        return Repeat(dialogue, Block(dialogue.LastPiece));
      }
      return OnFailure(dialogue, BlockError::Other);
  }
  if (dialogue.TakesTooLong(port_.Now() + WaitBehind(response))) return Step::Failed;
  dialogue.EndFailures();
  Send(dialogue, response);
  return Step::GoOn;
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
      TakeBlockSize(received.Found);
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
// so after a failure with the card it is asked for there as well: numbers that do not agree would
// end the repetition, too. Whether the card's address answers that does not matter.
bool BlockProtocol::Recover(Unit unit) {
  const Block resynch{NadTo(Unit::Terminal), pcb::Resynch};
  if (Request(resynch, RequestAttempts, BlockWait) != Reply::Granted) return false;
  if (unit == Unit::Card) (void)Request({NadTo(Unit::Card), pcb::Resynch}, 1, ProbeWait);
  peers_ = {};
  return AnnounceBlockSize();
}

void BlockProtocol::TakeBlockSize(const Block& request) {
  PeerOf(SenderOf(request)).BlockSize = request.Information[0];
}

bool MayBeRepeated(Unit unit, ByteView command) {
  constexpr std::array<std::uint8_t, 3> TerminalInstructions{ct_bcs::InsReset, ct_bcs::InsGetStatus,
                                                             ct_bcs::InsConnectionQuery};
  constexpr std::array<std::uint8_t, 3> CardInstructions{iso7816::InsSelect, iso7816::InsReadBinary,
                                                         iso7816::InsReadRecord};
  if (command.size() < 2) return false;
  const auto& known = unit == Unit::Terminal ? TerminalInstructions : CardInstructions;
  return std::find(known.begin(), known.end(), command[1]) != known.end();
}

}  // namespace ctapi::host
