#include "host/pcsc_service.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ctapi::host {

namespace {

constexpr std::uint32_t AnyProtocol = card_protocol::T0 | card_protocol::T1;
// Room for the names of as many readers as pcsc-lite has (16 of 128 characters): being told the
// length first would cost a question more.
constexpr std::size_t UsualLengthOfNames = 16 * 128 + 1;
// Longer than any command of a card takes: readers and drivers end an exchange before that.
constexpr std::chrono::seconds ExchangeTime{60};
// The longest answer of a card (ISO 7816-4, extended length), in a command's frame.
constexpr std::size_t LongestAnswer = 4 + 3 + 65'536 + 3 + 2;
// Between two questions to a service that does not wait for a change as it is asked to.
constexpr std::chrono::milliseconds Breath{30};
constexpr std::uint32_t LostStates =
    reader_state::Unknown | reader_state::Unavailable | reader_state::Ignore;

ReaderState StateOf(const ReaderStatus& told) {
  const std::uint32_t raw = told.Now;
  return {.HasCard = (raw & reader_state::Present) != 0,
          .IsHeld = (raw & (reader_state::Exclusive | reader_state::InUse)) != 0,
          .Atr = told.Atr,
          .Raw = raw & ~reader_state::Changed};
}

// Names one behind the other, each ended by a zero, the last by two.
std::vector<std::string> SplitNames(const std::string& multiString) {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < multiString.size() && multiString[at] != '\0';) {
    names.emplace_back(multiString.c_str() + at);
    at += names.back().size() + 1;
  }
  return names;
}

struct Established {
  PcscCode Code = PcscCode::InternalError;
  PcscContext Context = 0;
};

Established EstablishWith(const PcscApi& api) {
  Established established;
  established.Code = api.EstablishContext(established.Context);
  return established;
}

void ReleaseWith(const PcscApi& api, const Established& established) {
  if (established.Code == PcscCode::Success) (void)api.ReleaseContext(established.Context);
}

struct Connected {
  PcscCode Code = PcscCode::InternalError;
  CardConnection::Handle Handle{};
};

Connected ConnectWith(const PcscApi& api, PcscContext context, const std::string& reader,
                      CardSharing sharing, std::uint32_t protocols) {
  Connected connected{.Handle = {.Context = context}};
  connected.Code = api.Connect(context, reader, sharing, protocols, connected.Handle.Card,
                               connected.Handle.Protocol);
  return connected;
}

void DisconnectWith(const PcscApi& api, const Connected& connected, CardDisposition disposition) {
  if (connected.Code == PcscCode::Success) (void)api.Disconnect(connected.Handle.Card, disposition);
}

// Another program that connects while we power the card down can leave the service in two minds:
// it takes the card for powered, powers it up no more, and refuses it as unpowered. To power it
// down once more settles that.
Connected ConnectAlone(const PcscApi& api, PcscContext context, const std::string& reader) {
  const Connected connected =
      ConnectWith(api, context, reader, CardSharing::Exclusive, AnyProtocol);
  if (connected.Code != PcscCode::UnpoweredCard) return connected;
  DisconnectWith(api, ConnectWith(api, context, reader, CardSharing::Direct, card_protocol::None),
                 CardDisposition::Unpower);
  return ConnectWith(api, context, reader, CardSharing::Exclusive, AnyProtocol);
}

std::optional<std::uint32_t> VersionWith(const PcscApi& api, PcscContext context,
                                         const std::string& reader) {
  const Connected connected =
      ConnectWith(api, context, reader, CardSharing::Direct, card_protocol::None);
  if (connected.Code != PcscCode::Success) return std::nullopt;
  std::array<std::uint8_t, 4> version{};
  std::uint32_t length = 0;
  const PcscCode code =
      api.GetAttrib(connected.Handle.Card, DriverVersionAttribute, version, length);
  DisconnectWith(api, connected, CardDisposition::Leave);
  if (code != PcscCode::Success || length != version.size()) return std::nullopt;
  // A number of the machine, that is with its lowest byte first.
  return static_cast<std::uint32_t>(version[3]) << 24 |
         static_cast<std::uint32_t>(version[2]) << 16 |
         static_cast<std::uint32_t>(version[1]) << 8 | version[0];
}

// A service that is there and ends the conversation at once does not serve this user.
PcscResult ResultOfContext(PcscCode code) {
  const bool isRefused =
      code == PcscCode::CommunicationError || ResultOf(code) == PcscResult::Refused;
  return isRefused ? PcscResult::Refused : PcscResult::NoService;
}

}  // namespace

PcscResult ResultOf(PcscCode code) {
  switch (code) {
    case PcscCode::Success:
      return PcscResult::Ok;
    case PcscCode::NoService:
    case PcscCode::ServiceStopped:
    case PcscCode::ServerTooBusy:
    case PcscCode::CommunicationError:
      return PcscResult::NoService;
    case PcscCode::SecurityViolation:
    case PcscCode::NoAccess:
      return PcscResult::Refused;
    case PcscCode::UnknownReader:
    case PcscCode::ReaderUnavailable:
    case PcscCode::NoReadersAvailable:
      return PcscResult::NoReader;
    case PcscCode::NoSmartcard:
    case PcscCode::RemovedCard:
      return PcscResult::NoCard;
    case PcscCode::UnresponsiveCard:
    case PcscCode::UnpoweredCard:
    case PcscCode::UnsupportedCard:
    case PcscCode::ProtocolMismatch:
      return PcscResult::Mute;
    case PcscCode::SharingViolation:
      return PcscResult::Held;
    case PcscCode::ResetCard:
      return PcscResult::CardReset;
    case PcscCode::InsufficientBuffer:
      return PcscResult::TooLong;
    case PcscCode::Timeout:
      return PcscResult::Timeout;
    default:
      return PcscResult::Broken;
  }
}

PcscService::~PcscService() {
  Release();
}

template <typename Result>
std::optional<Result> PcscService::Call(
    std::chrono::milliseconds longest,
    std::function<Result(const PcscApi& api, PcscContext context)> call) {
  const auto api = api_;
  const PcscContext context = *context_;
  std::optional<Result> result = caller_->CallWithin<Result>(
      longest, [=] { return call(*api, context); },
      [=](const Result&) { (void)api->ReleaseContext(context); });
  if (!result) context_.reset();
  return result;
}

PcscResult PcscService::Establish() {
  if (!api_) return PcscResult::NoService;
  return context_ ? PcscResult::Ok : EstablishInto(context_);
}

PcscResult PcscService::EstablishForCard() {
  return *forCard_ ? PcscResult::Ok : EstablishInto(*forCard_);
}

PcscResult PcscService::EstablishInto(std::optional<PcscContext>& context) {
  const auto established = caller_->CallWithin<Established>(
      answerTime_, [api = api_] { return EstablishWith(*api); },
      [api = api_](const Established& late) { ReleaseWith(*api, late); });
  if (!established) return PcscResult::NoService;
  if (established->Code != PcscCode::Success) return ResultOfContext(established->Code);
  context = established->Context;
  return PcscResult::Ok;
}

void PcscService::Release() {
  for (std::optional<PcscContext>* const context : {&context_, forCard_.get()}) {
    if (!*context) continue;
    (void)caller_->CallWithin<PcscCode>(
        answerTime_, [api = api_, each = **context] { return api->ReleaseContext(each); },
        [](const PcscCode&) {});
    context->reset();
  }
}

// A context does not outlive the service that gave it.
PcscResult PcscService::List(std::vector<std::string>& names) {
  const bool isOld = context_.has_value();
  PcscResult result = ListOnce(names);
  if (result == PcscResult::NoService && isOld && api_) {
    Release();
    result = ListOnce(names);
  }
  return result;
}

PcscResult PcscService::ListOnce(std::vector<std::string>& names) {
  names.clear();
  if (const PcscResult result = Establish(); result != PcscResult::Ok) return result;
  std::size_t room = UsualLengthOfNames;
  // Readers may come between being told the length and asking for the names with it.
  for (int attempt = 0; attempt < 3; ++attempt) {
    struct Listed {
      PcscCode Code = PcscCode::InternalError;
      std::string Text{};
      std::uint32_t Length = 0;
    };
    const auto listed = Call<Listed>(answerTime_, [room](const PcscApi& api, PcscContext context) {
      Listed told{.Text = std::string(room, '\0')};
      told.Code = api.ListReaders(context, told.Text, told.Length);
      return told;
    });
    if (!listed) return PcscResult::NoService;
    const PcscResult result = ResultOf(listed->Code);
    if (result == PcscResult::TooLong) {
      room = std::max<std::size_t>(listed->Length, 2 * room);
      continue;
    }
    if (result == PcscResult::NoReader) return PcscResult::Ok;
    if (result == PcscResult::Refused) return result;
    if (result != PcscResult::Ok) return PcscResult::NoService;
    names = SplitNames(listed->Text);
    return PcscResult::Ok;
  }
  return PcscResult::NoService;
}

PcscResult PcscService::Query(const std::string& reader, ReaderState& state) {
  const PcscResult result = AwaitChange(reader, {}, std::chrono::milliseconds(0), state);
  return result == PcscResult::Timeout ? PcscResult::Ok : result;
}

PcscResult PcscService::AwaitChange(const std::string& reader, const ReaderState& known,
                                    std::chrono::milliseconds longest, ReaderState& state) {
  if (!context_) return PcscResult::NoService;
  struct Told {
    PcscCode Code = PcscCode::InternalError;
    ReaderStatus Status{};
  };
  const auto begin = api_->Now();
  const auto told = Call<Told>(longest + answerTime_, [reader, raw = known.Raw, longest](
                                                          const PcscApi& api, PcscContext context) {
    Told now{.Status = {.Reader = reader, .Known = raw}};
    const auto milliseconds = static_cast<std::uint32_t>(longest.count());
    now.Code = api.GetStatusChange(context, milliseconds, now.Status);
    return now;
  });
  if (!told) return PcscResult::NoService;
  const PcscResult result = ResultOf(told->Code);
  if (result == PcscResult::Ok || result == PcscResult::Timeout) {
    if ((told->Status.Now & LostStates) != 0) return PcscResult::NoReader;
    const bool isUnchanged = StateOf(told->Status).Raw == known.Raw;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(begin + longest - api_->Now());
    if (isUnchanged && left > left.zero()) api_->Pause(std::min(left, Breath));
    state = StateOf(told->Status);
    return result;
  }
  // Nothing of a card can go wrong here: without a reader's state the service is gone.
  return result == PcscResult::NoReader ? result : PcscResult::NoService;
}

PcscResult PcscService::Connect(const std::string& reader,
                                std::unique_ptr<CardConnection>& connection) {
  if (!context_) return PcscResult::NoService;
  if (const PcscResult result = EstablishForCard(); result != PcscResult::Ok) return result;
  const PcscContext context = *std::exchange(*forCard_, std::nullopt);
  const auto connected = caller_->CallWithin<Connected>(
      answerTime_, [api = api_, context, reader] { return ConnectAlone(*api, context, reader); },
      [api = api_, context](const Connected& late) {
        DisconnectWith(*api, late, CardDisposition::Leave);
        (void)api->ReleaseContext(context);
      });
  // Nothing else keeps the service from an answer for so long and lets it answer other questions.
  if (!connected) return PcscResult::Held;
  const PcscResult result = ResultOf(connected->Code);
  if (result == PcscResult::Ok) {
    connection =
        std::make_unique<CardConnection>(api_, caller_, connected->Handle, forCard_, answerTime_);
  } else {
    *forCard_ = context;
  }
  return result;
}

std::optional<std::uint32_t> PcscService::DriverVersion(const std::string& reader) {
  if (!context_ || EstablishForCard() != PcscResult::Ok) return std::nullopt;
  using Version = std::optional<std::uint32_t>;
  const PcscContext context = *std::exchange(*forCard_, std::nullopt);
  const auto version = caller_->CallWithin<Version>(
      answerTime_, [api = api_, context, reader] { return VersionWith(*api, context, reader); },
      [api = api_, context](const Version&) { (void)api->ReleaseContext(context); });
  if (version) *forCard_ = context;
  return version.value_or(std::nullopt);
}

CardConnection::~CardConnection() {
  if (handle_) (void)End();
}

PcscResult CardConnection::EndBy(CardDisposition disposition) {
  if (!handle_) return PcscResult::Timeout;
  const Handle handle = *std::exchange(handle_, std::nullopt);
  const auto ended = caller_->CallWithin<PcscCode>(
      answerTime_,
      [api = api_, handle, disposition] { return api->Disconnect(handle.Card, disposition); },
      [api = api_, handle](const PcscCode&) { (void)api->ReleaseContext(handle.Context); });
  if (!ended) return PcscResult::Timeout;
  if (spare_->has_value()) {
    (void)caller_->CallWithin<PcscCode>(
        answerTime_,
        [api = api_, context = handle.Context] { return api->ReleaseContext(context); },
        [](const PcscCode&) {});
  } else {
    *spare_ = handle.Context;
  }
  return ResultOf(*ended);
}

PcscResult CardConnection::Transmit(ByteView command, Bytes& answer) {
  answer.clear();
  if (!handle_) return PcscResult::Timeout;
  struct Exchanged {
    PcscCode Code = PcscCode::InternalError;
    Bytes Answer{};
  };
  const auto exchange = [api = api_, handle = *handle_,
                         sent = Bytes(command.begin(), command.end())] {
    Exchanged exchanged{.Answer = Bytes(LongestAnswer)};
    std::uint32_t length = 0;
    exchanged.Code = api->Transmit(handle.Card, handle.Protocol, sent, exchanged.Answer, length);
    const std::size_t told = exchanged.Code == PcscCode::Success ? length : 0;
    exchanged.Answer.resize(std::min(told, exchanged.Answer.size()));
    return exchanged;
  };
  auto exchanged = caller_->CallWithin<Exchanged>(
      ExchangeTime, exchange, [api = api_, handle = *handle_](const Exchanged&) {
        (void)api->Disconnect(handle.Card, CardDisposition::Unpower);
        (void)api->ReleaseContext(handle.Context);
      });
  if (!exchanged) {
    handle_.reset();
    return PcscResult::Timeout;
  }
  answer = std::move(exchanged->Answer);
  return ResultOf(exchanged->Code);
}

}  // namespace ctapi::host
