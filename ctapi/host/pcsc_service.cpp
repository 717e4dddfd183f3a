#include "host/pcsc_service.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <reader.h>
#include <utility>

namespace ctapi::host {

namespace {

constexpr DWORD AnyProtocol = SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1;
// Room for the names of as many readers as pcsc-lite has (16 of 128 characters): being told the
// length first would cost a question more.
constexpr std::size_t UsualLengthOfNames = 16 * 128 + 1;
// Longer than any command of a card takes: readers and drivers end an exchange before that.
constexpr std::chrono::seconds ExchangeTime{60};
constexpr DWORD LostStates = SCARD_STATE_UNKNOWN | SCARD_STATE_UNAVAILABLE | SCARD_STATE_IGNORE;

ReaderState StateOf(const SCARD_READERSTATE& told) {
  const DWORD raw = told.dwEventState;
  const std::size_t atrLength = std::min<std::size_t>(told.cbAtr, std::size(told.rgbAtr));
  return {.HasCard = (raw & SCARD_STATE_PRESENT) != 0,
          .IsHeld = (raw & (SCARD_STATE_EXCLUSIVE | SCARD_STATE_INUSE)) != 0,
          .Atr = Bytes(told.rgbAtr, told.rgbAtr + atrLength),
          .Raw = raw & ~static_cast<DWORD>(SCARD_STATE_CHANGED)};
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
  LONG Code = SCARD_F_INTERNAL_ERROR;
  SCARDCONTEXT Context = 0;
};

Established EstablishWith(const PcscApi& api) {
  Established established;
  established.Code =
      api.EstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &established.Context);
  return established;
}

void ReleaseWith(const PcscApi& api, const Established& established) {
  if (established.Code == SCARD_S_SUCCESS) (void)api.ReleaseContext(established.Context);
}

struct Connected {
  LONG Code = SCARD_F_INTERNAL_ERROR;
  CardConnection::Handle Handle{};
};

Connected ConnectWith(const PcscApi& api, SCARDCONTEXT context, const std::string& reader,
                      DWORD mode, DWORD protocols) {
  Connected connected{.Handle = {.Context = context}};
  connected.Code = api.Connect(context, reader.c_str(), mode, protocols, &connected.Handle.Card,
                               &connected.Handle.Protocol);
  return connected;
}

void DisconnectWith(const PcscApi& api, const Connected& connected, DWORD disposition) {
  if (connected.Code == SCARD_S_SUCCESS) (void)api.Disconnect(connected.Handle.Card, disposition);
}

// Another program that connects while we power the card down can leave the service in two minds:
// it takes the card for powered, powers it up no more, and refuses it as unpowered. To power it
// down once more settles that.
Connected ConnectAlone(const PcscApi& api, SCARDCONTEXT context, const std::string& reader) {
  const Connected connected = ConnectWith(api, context, reader, SCARD_SHARE_EXCLUSIVE, AnyProtocol);
  if (connected.Code != SCARD_W_UNPOWERED_CARD) return connected;
  DisconnectWith(api, ConnectWith(api, context, reader, SCARD_SHARE_DIRECT, 0), SCARD_UNPOWER_CARD);
  return ConnectWith(api, context, reader, SCARD_SHARE_EXCLUSIVE, AnyProtocol);
}

std::optional<std::uint32_t> VersionWith(const PcscApi& api, SCARDCONTEXT context,
                                         const std::string& reader) {
  const Connected connected = ConnectWith(api, context, reader, SCARD_SHARE_DIRECT, 0);
  if (connected.Code != SCARD_S_SUCCESS) return std::nullopt;
  std::array<std::uint8_t, 4> version{};
  DWORD length = version.size();
  const LONG code =
      api.GetAttrib(connected.Handle.Card, SCARD_ATTR_VENDOR_IFD_VERSION, version.data(), &length);
  DisconnectWith(api, connected, SCARD_LEAVE_CARD);
  if (code != SCARD_S_SUCCESS || length != version.size()) return std::nullopt;
  // A number of the machine, that is with its lowest byte first.
  return static_cast<std::uint32_t>(version[3]) << 24 |
         static_cast<std::uint32_t>(version[2]) << 16 |
         static_cast<std::uint32_t>(version[1]) << 8 | version[0];
}

// A service that is there and ends the conversation at once does not serve this user.
PcscResult ResultOfContext(LONG code) {
  const bool isRefused = code == SCARD_F_COMM_ERROR || ResultOf(code) == PcscResult::Refused;
  return isRefused ? PcscResult::Refused : PcscResult::NoService;
}

}  // namespace

PcscResult ResultOf(LONG code) {
  switch (code) {
    case SCARD_S_SUCCESS:
      return PcscResult::Ok;
    case SCARD_E_NO_SERVICE:
    case SCARD_E_SERVICE_STOPPED:
    case SCARD_E_SERVER_TOO_BUSY:
    case SCARD_F_COMM_ERROR:
      return PcscResult::NoService;
    case SCARD_W_SECURITY_VIOLATION:
    case SCARD_E_NO_ACCESS:
      return PcscResult::Refused;
    case SCARD_E_UNKNOWN_READER:
    case SCARD_E_READER_UNAVAILABLE:
    case SCARD_E_NO_READERS_AVAILABLE:
      return PcscResult::NoReader;
    case SCARD_E_NO_SMARTCARD:
    case SCARD_W_REMOVED_CARD:
      return PcscResult::NoCard;
    case SCARD_W_UNRESPONSIVE_CARD:
    case SCARD_W_UNPOWERED_CARD:
    case SCARD_W_UNSUPPORTED_CARD:
    case SCARD_E_PROTO_MISMATCH:
      return PcscResult::Mute;
    case SCARD_E_SHARING_VIOLATION:
      return PcscResult::Held;
    case SCARD_W_RESET_CARD:
      return PcscResult::CardReset;
    case SCARD_E_INSUFFICIENT_BUFFER:
      return PcscResult::TooLong;
    case SCARD_E_TIMEOUT:
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
    std::function<Result(const PcscApi& api, SCARDCONTEXT context)> call) {
  const auto api = api_;
  const SCARDCONTEXT context = *context_;
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

PcscResult PcscService::EstablishInto(std::optional<SCARDCONTEXT>& context) {
  const auto established = caller_->CallWithin<Established>(
      answerTime_, [api = api_] { return EstablishWith(*api); },
      [api = api_](const Established& late) { ReleaseWith(*api, late); });
  if (!established) return PcscResult::NoService;
  if (established->Code != SCARD_S_SUCCESS) return ResultOfContext(established->Code);
  context = established->Context;
  return PcscResult::Ok;
}

void PcscService::Release() {
  for (std::optional<SCARDCONTEXT>* const context : {&context_, forCard_.get()}) {
    if (!*context) continue;
    (void)caller_->CallWithin<LONG>(
        answerTime_, [api = api_, each = **context] { return api->ReleaseContext(each); },
        [](const LONG&) {});
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
      LONG Code = SCARD_F_INTERNAL_ERROR;
      std::string Text{};
      DWORD Length = 0;
    };
    const auto listed = Call<Listed>(answerTime_, [room](const PcscApi& api, SCARDCONTEXT context) {
      Listed told{.Text = std::string(room, '\0'), .Length = static_cast<DWORD>(room)};
      told.Code = api.ListReaders(context, nullptr, told.Text.data(), &told.Length);
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
    LONG Code = SCARD_F_INTERNAL_ERROR;
    SCARD_READERSTATE State{};
  };
  const auto told =
      Call<Told>(longest + answerTime_,
                 [reader, raw = known.Raw, longest](const PcscApi& api, SCARDCONTEXT context) {
                   Told now;
                   now.State.szReader = reader.c_str();
                   now.State.dwCurrentState = raw;
                   const auto milliseconds = static_cast<DWORD>(longest.count());
                   now.Code = api.GetStatusChange(context, milliseconds, &now.State, 1);
                   return now;
                 });
  if (!told) return PcscResult::NoService;
  const PcscResult result = ResultOf(told->Code);
  if (result == PcscResult::Ok || result == PcscResult::Timeout) {
    if ((told->State.dwEventState & LostStates) != 0) return PcscResult::NoReader;
    state = StateOf(told->State);
    return result;
  }
  // Nothing of a card can go wrong here: without a reader's state the service is gone.
  return result == PcscResult::NoReader ? result : PcscResult::NoService;
}

PcscResult PcscService::Connect(const std::string& reader,
                                std::unique_ptr<CardConnection>& connection) {
  if (!context_) return PcscResult::NoService;
  if (const PcscResult result = EstablishForCard(); result != PcscResult::Ok) return result;
  const SCARDCONTEXT context = *std::exchange(*forCard_, std::nullopt);
  const auto connected = caller_->CallWithin<Connected>(
      answerTime_, [api = api_, context, reader] { return ConnectAlone(*api, context, reader); },
      [api = api_, context](const Connected& late) {
        DisconnectWith(*api, late, SCARD_LEAVE_CARD);
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
  const SCARDCONTEXT context = *std::exchange(*forCard_, std::nullopt);
  const auto version = caller_->CallWithin<Version>(
      answerTime_, [api = api_, context, reader] { return VersionWith(*api, context, reader); },
      [api = api_, context](const Version&) { (void)api->ReleaseContext(context); });
  if (version) *forCard_ = context;
  return version.value_or(std::nullopt);
}

CardConnection::~CardConnection() {
  if (handle_) (void)End();
}

PcscResult CardConnection::EndBy(DWORD disposition) {
  if (!handle_) return PcscResult::Timeout;
  const Handle handle = *std::exchange(handle_, std::nullopt);
  const auto ended = caller_->CallWithin<LONG>(
      answerTime_,
      [api = api_, handle, disposition] { return api->Disconnect(handle.Card, disposition); },
      [api = api_, handle](const LONG&) { (void)api->ReleaseContext(handle.Context); });
  if (!ended) return PcscResult::Timeout;
  if (spare_->has_value()) {
    (void)caller_->CallWithin<LONG>(
        answerTime_,
        [api = api_, context = handle.Context] { return api->ReleaseContext(context); },
        [](const LONG&) {});
  } else {
    *spare_ = handle.Context;
  }
  return ResultOf(*ended);
}

PcscResult CardConnection::Transmit(ByteView command, Bytes& answer) {
  answer.clear();
  if (!handle_) return PcscResult::Timeout;
  struct Exchanged {
    LONG Code = SCARD_F_INTERNAL_ERROR;
    Bytes Answer{};
  };
  const auto exchange = [api = api_, handle = *handle_,
                         sent = Bytes(command.begin(), command.end())] {
    const SCARD_IO_REQUEST request{handle.Protocol, sizeof(SCARD_IO_REQUEST)};
    Exchanged exchanged{.Answer = Bytes(MAX_BUFFER_SIZE_EXTENDED)};
    auto length = static_cast<DWORD>(exchanged.Answer.size());
    exchanged.Code =
        api->Transmit(handle.Card, &request, sent.data(), static_cast<DWORD>(sent.size()), nullptr,
                      exchanged.Answer.data(), &length);
    const std::size_t told = exchanged.Code == SCARD_S_SUCCESS ? length : 0;
    exchanged.Answer.resize(std::min(told, exchanged.Answer.size()));
    return exchanged;
  };
  auto exchanged = caller_->CallWithin<Exchanged>(
      ExchangeTime, exchange, [api = api_, handle = *handle_](const Exchanged&) {
        (void)api->Disconnect(handle.Card, SCARD_UNPOWER_CARD);
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
