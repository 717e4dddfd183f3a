#include "host/windows/pcsc_api.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <winscard.h>

#include "protocol/windows/wide_text.h"

namespace ctapi::host {

namespace {

// The functions of the client library by their own types.
struct Client {
  decltype(&SCardEstablishContext) EstablishContext = nullptr;
  decltype(&SCardReleaseContext) ReleaseContext = nullptr;
  decltype(&SCardListReadersW) ListReaders = nullptr;
  decltype(&SCardGetStatusChangeW) GetStatusChange = nullptr;
  decltype(&SCardConnectW) Connect = nullptr;
  decltype(&SCardDisconnect) Disconnect = nullptr;
  decltype(&SCardTransmit) Transmit = nullptr;
  decltype(&SCardGetAttrib) GetAttrib = nullptr;
};

template <typename Function>
bool Resolve(HMODULE library, const char* name, Function& into) {
  into = reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
  return into != nullptr;
}

std::optional<Client> LoadClient(const std::wstring& file) {
  // Never unloaded: the client library keeps connections of its own.
  const HMODULE library = ::LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library == nullptr) return std::nullopt;
  Client client;
  const bool whole = Resolve(library, "SCardEstablishContext", client.EstablishContext) &&
                     Resolve(library, "SCardReleaseContext", client.ReleaseContext) &&
                     Resolve(library, "SCardListReadersW", client.ListReaders) &&
                     Resolve(library, "SCardGetStatusChangeW", client.GetStatusChange) &&
                     Resolve(library, "SCardConnectW", client.Connect) &&
                     Resolve(library, "SCardDisconnect", client.Disconnect) &&
                     Resolve(library, "SCardTransmit", client.Transmit) &&
                     Resolve(library, "SCardGetAttrib", client.GetAttrib);
  return whole ? std::optional(client) : std::nullopt;
}

// Beside its own codes the client library tells those of what it is made of: of the pipe to the
// service, of the remote desktop, of the reader's driver.
PcscCode CodeOf(LONG told) {
  switch (told) {
    case ERROR_INVALID_HANDLE:
    case ERROR_BROKEN_PIPE:
    case ERROR_PIPE_NOT_CONNECTED:
    case ERROR_SERVICE_NOT_ACTIVE:
    case RPC_S_SERVER_UNAVAILABLE:
    case RPC_S_CALL_FAILED:
    case RPC_S_CALL_FAILED_DNE:
    case RPC_S_UNKNOWN_IF:
      return PcscCode::ServiceStopped;
    case ERROR_ACCESS_DENIED:
      return PcscCode::NoAccess;
    case ERROR_INSUFFICIENT_BUFFER:
    case ERROR_MORE_DATA:
      return PcscCode::InsufficientBuffer;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_DEVICE_REMOVED:
      return PcscCode::ReaderUnavailable;
    case ERROR_NO_MEDIA_IN_DRIVE:
      return PcscCode::NoSmartcard;
    case ERROR_NOT_SUPPORTED:
    case ERROR_INVALID_FUNCTION:
      return PcscCode::UnsupportedFeature;
    default:
      return static_cast<PcscCode>(static_cast<std::uint32_t>(told));
  }
}

// The names in UTF-8 are as long or longer than the system's.
PcscCode ListReaders(const Client& client, PcscContext context, std::span<char> names,
                     std::uint32_t& length) {
  std::wstring wide(names.size(), L'\0');
  auto count = static_cast<DWORD>(wide.size());
  const LONG told = client.ListReaders(context, nullptr, wide.data(), &count);
  length = count;
  if (told != SCARD_S_SUCCESS) return CodeOf(told);
  wide.resize(std::min<std::size_t>(count, wide.size()));
  const std::string text = Utf8Text(wide);
  length = static_cast<std::uint32_t>(text.size());
  if (text.size() > names.size()) return PcscCode::InsufficientBuffer;
  std::copy(text.begin(), text.end(), names.begin());
  return PcscCode::Success;
}

PcscCode GetStatusChange(const Client& client, PcscContext context, std::uint32_t milliseconds,
                         ReaderStatus& status) {
  const std::wstring reader = WideText(status.Reader);
  SCARD_READERSTATEW state{};
  state.szReader = reader.c_str();
  state.dwCurrentState = status.Known;
  const LONG told = client.GetStatusChange(context, milliseconds, &state, 1);
  status.Now = state.dwEventState;
  const std::size_t atrLength = std::min<std::size_t>(state.cbAtr, std::size(state.rgbAtr));
  status.Atr.assign(state.rgbAtr, state.rgbAtr + atrLength);
  return CodeOf(told);
}

PcscCode Connect(const Client& client, PcscContext context, const std::string& reader,
                 CardSharing sharing, std::uint32_t protocols, PcscCard& card,
                 std::uint32_t& protocol) {
  SCARDHANDLE handle = 0;
  DWORD active = 0;
  const LONG told = client.Connect(context, WideText(reader).c_str(), static_cast<DWORD>(sharing),
                                   protocols, &handle, &active);
  card = handle;
  protocol = active;
  return CodeOf(told);
}

PcscCode Transmit(const Client& client, PcscCard card, std::uint32_t protocol, ByteView command,
                  std::span<std::uint8_t> answer, std::uint32_t& length) {
  const SCARD_IO_REQUEST request{protocol, sizeof(SCARD_IO_REQUEST)};
  auto count = static_cast<DWORD>(answer.size());
  const LONG told =
      client.Transmit(card, &request, command.data(), static_cast<DWORD>(command.size()), nullptr,
                      answer.data(), &count);
  length = count;
  return CodeOf(told);
}

}  // namespace

// From the system's folder and from nowhere else.
std::optional<PcscApi> LoadPcscApi() {
  constexpr DWORD LongestPath = 32'768;  // characters, the system's limit
  std::wstring folder(LongestPath, L'\0');
  folder.resize(::GetSystemDirectoryW(folder.data(), LongestPath));
  return LoadPcscApiFrom(folder + L"\\winscard.dll");
}

std::optional<PcscApi> LoadPcscApiFrom(const std::wstring& file) {
  const std::optional<Client> loaded = LoadClient(file);
  if (!loaded) return std::nullopt;
  const Client client = *loaded;
  PcscApi api;
  api.EstablishContext = [client](PcscContext& context) {
    SCARDCONTEXT established = 0;
    const LONG told = client.EstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &established);
    context = established;
    return CodeOf(told);
  };
  api.ReleaseContext = [client](PcscContext context) {
    return CodeOf(client.ReleaseContext(context));
  };
  api.ListReaders = [client](auto&&... all) { return ListReaders(client, all...); };
  api.GetStatusChange = [client](auto&&... all) { return GetStatusChange(client, all...); };
  api.Connect = [client](auto&&... all) { return Connect(client, all...); };
  api.Disconnect = [client](PcscCard card, CardDisposition disposition) {
    return CodeOf(client.Disconnect(card, static_cast<DWORD>(disposition)));
  };
  api.Transmit = [client](auto&&... all) { return Transmit(client, all...); };
  api.GetAttrib = [client](PcscCard card, std::uint32_t attribute, std::span<std::uint8_t> value,
                           std::uint32_t& length) {
    auto count = static_cast<DWORD>(value.size());
    const LONG told = client.GetAttrib(card, attribute, value.data(), &count);
    length = count;
    return CodeOf(told);
  };
  return api;
}

}  // namespace ctapi::host
