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

PcscResult PcscService::Establish() {
  if (!api_) return PcscResult::NoService;
  if (context_) return PcscResult::Ok;
  SCARDCONTEXT context = 0;
  const LONG code = api_->EstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &context);
  if (code != SCARD_S_SUCCESS) return PcscResult::NoService;
  context_ = context;
  return PcscResult::Ok;
}

void PcscService::Release() {
  if (context_) (void)api_->ReleaseContext(*context_);
  context_.reset();
}

// A context does not outlive the service that gave it.
PcscResult PcscService::List(std::vector<std::string>& names) {
  const bool isOld = context_.has_value();
  PcscResult result = ListOnce(names);
  if (result == PcscResult::NoService && isOld) {
    Release();
    result = ListOnce(names);
  }
  return result;
}

PcscResult PcscService::ListOnce(std::vector<std::string>& names) {
  names.clear();
  if (const PcscResult result = Establish(); result != PcscResult::Ok) return result;
  std::string text(UsualLengthOfNames, '\0');
  // Readers may come between being told the length and asking for the names with it.
  for (int attempt = 0; attempt < 3; ++attempt) {
    auto length = static_cast<DWORD>(text.size());
    const PcscResult result = ResultOf(api_->ListReaders(*context_, nullptr, text.data(), &length));
    if (result == PcscResult::TooLong) {
      text.resize(std::max<std::size_t>(length, 2 * text.size()));
      continue;
    }
    if (result == PcscResult::NoReader) return PcscResult::Ok;
    if (result != PcscResult::Ok) return PcscResult::NoService;
    names = SplitNames(text);
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
  SCARD_READERSTATE query{};
  query.szReader = reader.c_str();
  query.dwCurrentState = known.Raw;
  const PcscResult result =
      ResultOf(api_->GetStatusChange(*context_, static_cast<DWORD>(longest.count()), &query, 1));
  if (result == PcscResult::Ok || result == PcscResult::Timeout) {
    if ((query.dwEventState & LostStates) != 0) return PcscResult::NoReader;
    state = StateOf(query);
    return result;
  }
  // Nothing of a card can go wrong here: without a reader's state the service is gone.
  return result == PcscResult::NoReader ? result : PcscResult::NoService;
}

PcscResult PcscService::Connect(const std::string& reader,
                                std::unique_ptr<CardConnection>& connection) {
  if (!context_) return PcscResult::NoService;
  SCARDHANDLE handle = 0;
  DWORD protocol = 0;
  const PcscResult result = ResultOf(api_->Connect(*context_, reader.c_str(), SCARD_SHARE_EXCLUSIVE,
                                                   AnyProtocol, &handle, &protocol));
  if (result == PcscResult::Ok) {
    connection = std::make_unique<CardConnection>(*api_, handle, protocol);
  }
  return result;
}

std::optional<std::uint32_t> PcscService::DriverVersion(const std::string& reader) {
  if (!context_) return std::nullopt;
  SCARDHANDLE handle = 0;
  DWORD protocol = 0;
  if (api_->Connect(*context_, reader.c_str(), SCARD_SHARE_DIRECT, 0, &handle, &protocol) !=
      SCARD_S_SUCCESS) {
    return std::nullopt;
  }
  std::array<std::uint8_t, 4> version{};
  DWORD length = version.size();
  const LONG code = api_->GetAttrib(handle, SCARD_ATTR_VENDOR_IFD_VERSION, version.data(), &length);
  (void)api_->Disconnect(handle, SCARD_LEAVE_CARD);
  if (code != SCARD_S_SUCCESS || length != version.size()) return std::nullopt;
  // A number of the machine, that is with its lowest byte first.
  return static_cast<std::uint32_t>(version[3]) << 24 |
         static_cast<std::uint32_t>(version[2]) << 16 |
         static_cast<std::uint32_t>(version[1]) << 8 | version[0];
}

CardConnection::~CardConnection() {
  if (handle_) (void)End();
}

PcscResult CardConnection::End() {
  return ResultOf(api_.Disconnect(*std::exchange(handle_, std::nullopt), SCARD_UNPOWER_CARD));
}

PcscResult CardConnection::WarmReset() {
  return ResultOf(
      api_.Reconnect(*handle_, SCARD_SHARE_EXCLUSIVE, AnyProtocol, SCARD_RESET_CARD, &protocol_));
}

PcscResult CardConnection::Transmit(ByteView command, Bytes& answer) {
  const SCARD_IO_REQUEST request{protocol_, sizeof(SCARD_IO_REQUEST)};
  buffer_.resize(MAX_BUFFER_SIZE_EXTENDED);
  auto length = static_cast<DWORD>(buffer_.size());
  const LONG code =
      api_.Transmit(*handle_, &request, command.data(), static_cast<DWORD>(command.size()), nullptr,
                    buffer_.data(), &length);
  const std::size_t told = code == SCARD_S_SUCCESS ? length : 0;
  const ByteView received = ByteView(buffer_).first(std::min(told, buffer_.size()));
  answer.assign(received.begin(), received.end());
  return ResultOf(code);
}

}  // namespace ctapi::host
