#include "host/reader_link.h"

#include <algorithm>
#include <array>

#include "host/reader_texts.h"
#include "host/reader_trouble.h"
#include "protocol/ct_bcs.h"
#include "protocol/status_word.h"

namespace ctapi::host {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Places of a command.
constexpr std::size_t HeaderLength = 4;
constexpr std::size_t P1 = 2;
constexpr std::size_t P2 = 3;
constexpr std::size_t DataAt = 5;

constexpr milliseconds Slice{250};
// Of a held card: programs that come by often leave no longer pauses.
constexpr milliseconds HeldSlice{20};
// RESET ICC names no waiting time. Whoever takes the card between its reset and our connection is
// on its way out as a rule.
constexpr seconds ResetPatience{2};
// Drivers look every 0.4 s whether the card is still there.
constexpr milliseconds RemovalShows{600};

void Append(Bytes& response, StatusWord word) {
  response.push_back(word.Sw1());
  response.push_back(word.Sw2());
}

PcscResult Reply(Bytes& response, StatusWord word) {
  response.clear();
  Append(response, word);
  return PcscResult::Ok;
}

bool AsksForKnownCardData(ByteView command) {
  const std::uint8_t wanted = command[P2] & 0x0F;
  return wanted == ct_bcs::NoCardData || wanted == ct_bcs::WholeAtr;
}

// Seconds that the command's data tell to wait.
seconds WaitingTime(ByteView command) {
  const bool hasData = command.size() > DataAt && command[DataAt - 1] >= 1;
  return seconds(hasData ? command[DataAt] : 0);
}

std::int8_t CodeOf(PcscResult result) {
  switch (result) {
    case PcscResult::Ok:
      return code::Success;
    case PcscResult::NoService:
    case PcscResult::Refused:
    case PcscResult::Held:
      return code::HostError;
    case PcscResult::NoReader:
    case PcscResult::NoCard:
      return code::TerminalError;
    case PcscResult::TooLong:
      return code::BufferTooSmall;
    case PcscResult::Mute:
    case PcscResult::CardReset:
    case PcscResult::Timeout:
    case PcscResult::Broken:
      break;
  }
  return code::TransmissionError;
}

}  // namespace

std::int8_t ReaderLink::Exchange(Unit unit, ByteView command, Bytes& response) {
  response.clear();
  if (isLost_) return code::HtsiError;
  const PcscResult result =
      unit == Unit::Terminal ? ToTerminal(command, response) : ToCard(command, response);
  if (result == PcscResult::Ok) return code::Success;
  response.clear();
  if (result != PcscResult::TooLong) {
    Drop();
    if (TroubleOf(result) != PortTroubleKind::None) trouble_ = TroubleOf(result);
  }
  // A service that is gone takes its readers with it: the one that comes after has to be asked anew
  // by init. Everything else can be mended by the next REQUEST ICC.
  isLost_ = result == PcscResult::NoService;
  return CodeOf(result);
}

PcscResult ReaderLink::ToTerminal(ByteView command, Bytes& response) {
  if (command[0] != ct_bcs::TerminalClass) return Reply(response, sw::UnknownClass);
  if (command.size() < HeaderLength) return Reply(response, sw::WrongLength);
  switch (command[1]) {
    case ct_bcs::InsReset:
      return command[P1] == ct_bcs::UnitTerminal ? ResetCt(response) : ResetIcc(command, response);
    case ct_bcs::InsRequestIcc:
      return RequestIcc(command, response);
    case ct_bcs::InsGetStatus:
      return GetStatus(command, response);
    case ct_bcs::InsEjectIcc:
      return EjectIcc(command, response);
    default:
      return Reply(response, sw::UnknownInstruction);
  }
}

PcscResult ReaderLink::ToCard(ByteView command, Bytes& response) {
  if (!card_) return Reply(response, sw::NoDiagnosis);
  PcscResult result = Send(command, response);
  const bool isShared = result == PcscResult::Held || result == PcscResult::CardReset;
  if (isShared && !isCardUsed_) result = SendAfterAll(command, response);
  isCardUsed_ = true;
  return result == PcscResult::Ok ? result : ReasonFor(result);
}

PcscResult ReaderLink::Send(ByteView command, Bytes& response) {
  const PcscResult result = isMemory_ ? memory_.Send(*card_, command, response)
                                      : SendToProcessorCard(*card_, command, response);
  const bool isShort = result == PcscResult::Ok && response.size() < sw::Length;
  return isShort ? PcscResult::Broken : result;
}

// The service lets another program share our card that connects in the same instant. A card that
// was asked for nothing yet is left and taken up again; later on the other one may have changed
// what the card has selected.
PcscResult ReaderLink::SendAfterAll(ByteView command, Bytes& response) {
  constexpr std::array<std::uint8_t, HeaderLength> Request{
      ct_bcs::TerminalClass, ct_bcs::InsRequestIcc, ct_bcs::UnitSlot1, ct_bcs::NoCardData};
  (void)card_->Leave();
  Drop();
  const PcscResult activated =
      ActivateBy(service_.Now() + ResetPatience, Request, {.HasCard = true}, response);
  if (activated != PcscResult::Ok) return activated;
  return card_ ? Send(command, response) : PcscResult::Mute;
}

PcscResult ReaderLink::ResetCt(Bytes& response) {
  // Ending a connection tells as well as a look that the reader is there.
  const bool isReaderThere = card_ ? card_->End() == PcscResult::Ok : WasSeenJustNow();
  Drop();
  ReaderState state;
  const PcscResult result = isReaderThere ? PcscResult::Ok : Look(state);
  return result == PcscResult::Ok ? Reply(response, sw::Ok) : result;
}

PcscResult ReaderLink::ResetIcc(ByteView command, Bytes& response) {
  if (command[P1] != ct_bcs::UnitSlot1 || !AsksForKnownCardData(command)) {
    return Reply(response, sw::WrongParameters);
  }
  ReaderState state;
  if (!card_ || !WasSeenJustNow()) {
    if (const PcscResult result = Look(state); result != PcscResult::Ok) return result;
  }
  if (card_) {
    const PcscResult ended = card_->EndByReset();
    Drop();
    if (ended != PcscResult::Ok && ended != PcscResult::Mute && ended != PcscResult::NoCard) {
      return ReasonFor(ended);
    }
    // Nobody else could reach the card until now.
    state = {.HasCard = true};
  }
  const PcscResult result = ActivateBy(service_.Now() + ResetPatience, command, state, response);
  return result == PcscResult::NoCard ? Reply(response, sw::ResetFailed) : result;
}

PcscResult ReaderLink::RequestIcc(ByteView command, Bytes& response) {
  if (command[P1] != ct_bcs::UnitSlot1 || !AsksForKnownCardData(command)) {
    return Reply(response, sw::WrongParameters);
  }
  ReaderState state;
  if (const PcscResult result = Look(state); result != PcscResult::Ok) return result;
  if (card_) return Reply(response, sw::CardAlreadyPresent);
  const auto end = service_.Now() + WaitingTime(command);
  for (;;) {
    const PcscResult result = ActivateBy(end, command, state, response);
    if (result != PcscResult::NoCard) return result;
    if (service_.Now() >= end) return Reply(response, sw::NoCard);
    if (const PcscResult waited = Wait(end, Slice, state); waited != PcscResult::Ok) return waited;
  }
}

PcscResult ReaderLink::ActivateBy(std::chrono::steady_clock::time_point end, ByteView command,
                                  ReaderState state, Bytes& response) {
  trouble_.reset();
  for (;;) {
    const PcscResult result = Activate(command, state, response);
    if (result != PcscResult::Held || service_.Now() >= end) return result;
    if (const PcscResult waited = Wait(end, HeldSlice, state); waited != PcscResult::Ok) {
      return waited;
    }
  }
}

PcscResult ReaderLink::Activate(ByteView command, ReaderState state, Bytes& response) {
  if (!state.HasCard) return PcscResult::NoCard;
  if (state.IsHeld) return PcscResult::Held;
  const PcscResult connected = service_.Connect(reader_, card_);
  const PcscResult seen = service_.Query(reader_, state);
  switch (connected) {
    case PcscResult::Ok:
      if (seen != PcscResult::Ok) return seen;
      break;
    case PcscResult::NoService:
    case PcscResult::Refused:
    case PcscResult::NoReader:
    case PcscResult::NoCard:
    case PcscResult::Held:
      return connected;
    default:
      // Nothing was exchanged yet that could break: the card is of no use.
      if (seen != PcscResult::Ok) return seen;
      trouble_ = TroubleOf(connected);
      return Reply(response, sw::ResetFailed);
  }
  trouble_ = PortTroubleKind::None;
  seenAt_ = service_.Now();
  eventsAtActivation_ = state.Events();
  atr_ = std::move(state.Atr);
  isMemory_ = IsMemoryCard(atr_);
  isCardUsed_ = false;
  memory_ = {};
  response = ActivationAnswer(command);
  return PcscResult::Ok;
}

Bytes ReaderLink::ActivationAnswer(ByteView command) const {
  Bytes answer = (command[P2] & 0x0F) == ct_bcs::WholeAtr ? atr_ : Bytes{};
  Append(answer, isMemory_ ? sw::Ok : sw::OkProcessorCard);
  return answer;
}

PcscResult ReaderLink::GetStatus(ByteView command, Bytes& response) {
  ReaderState state;
  if (const PcscResult result = Look(state); result != PcscResult::Ok) return result;
  if (command[P1] != ct_bcs::UnitTerminal) return Reply(response, sw::WrongParameters);
  switch (command[P2]) {
    case ct_bcs::ObjectManufacturer:
      if (manufacturer_.empty()) {
        manufacturer_ = ManufacturerObject(
            reader_, state.IsHeld ? std::nullopt : service_.DriverVersion(reader_));
      }
      response = manufacturer_;
      break;
    case ct_bcs::ObjectCardStatus: {
      const std::uint8_t idle = state.HasCard ? ct_bcs::CardPresent : ct_bcs::CardAbsent;
      response = {ct_bcs::ObjectCardStatus, 1, card_ ? ct_bcs::CardConnected : idle};
      break;
    }
    case ct_bcs::ObjectFunctionalUnits:
      response = {ct_bcs::ObjectFunctionalUnits, 1, ct_bcs::UnitSlot1};
      break;
    default:
      return Reply(response, sw::WrongParameters);
  }
  Append(response, sw::Ok);
  return PcscResult::Ok;
}

PcscResult ReaderLink::EjectIcc(ByteView command, Bytes& response) {
  if (command[P1] != ct_bcs::UnitSlot1) return Reply(response, sw::WrongParameters);
  Drop();
  ReaderState state;
  if (const PcscResult result = Look(state); result != PcscResult::Ok) return result;
  const seconds waiting = WaitingTime(command);
  if (waiting == seconds(0)) return Reply(response, sw::Ok);
  const auto end = service_.Now() + waiting;
  while (state.HasCard) {
    if (service_.Now() >= end) return Reply(response, sw::NoCard);
    if (const PcscResult waited = Wait(end, Slice, state); waited != PcscResult::Ok) return waited;
  }
  return Reply(response, sw::OkProcessorCard);
}

void ReaderLink::Drop() {
  card_.reset();
  if (trouble_ == PortTroubleKind::None) trouble_.reset();
}

PcscResult ReaderLink::Look(ReaderState& state) {
  const PcscResult result = service_.Query(reader_, state);
  if (result != PcscResult::Ok) return result;
  seenAt_ = service_.Now();
  if (card_ && (!state.HasCard || state.Events() != eventsAtActivation_)) Drop();
  return PcscResult::Ok;
}

// Nobody pulls a reader or changes a card within a slice, in which it would go unnoticed anyway.
bool ReaderLink::WasSeenJustNow() const {
  return service_.Now() - seenAt_ < Slice;
}

PcscResult ReaderLink::ReasonFor(PcscResult result) {
  if (result != PcscResult::Broken && result != PcscResult::Mute) return result;
  const auto end = service_.Now() + RemovalShows;
  ReaderState state;
  if (const PcscResult query = service_.Query(reader_, state); query != PcscResult::Ok) {
    return query;
  }
  while (state.HasCard && state.Events() == eventsAtActivation_) {
    if (service_.Now() >= end) return PcscResult::Broken;
    if (const PcscResult waited = Wait(end, Slice, state); waited != PcscResult::Ok) return waited;
  }
  return PcscResult::NoCard;
}

PcscResult ReaderLink::Wait(std::chrono::steady_clock::time_point end, milliseconds slice,
                            ReaderState& state) {
  const auto left = std::chrono::ceil<milliseconds>(end - service_.Now());
  const PcscResult result =
      service_.AwaitChange(reader_, state, std::clamp(left, milliseconds(1), slice), state);
  return result == PcscResult::Timeout ? PcscResult::Ok : result;
}

}  // namespace ctapi::host
