#include "host/pcsc_api.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <iterator>
#include <winscard.h>

namespace ctapi::host {

namespace {

constexpr const char* ClientLibrary = "libpcsclite.so.1";

// The functions of the client library by their own types.
struct Client {
  decltype(&SCardEstablishContext) EstablishContext = nullptr;
  decltype(&SCardReleaseContext) ReleaseContext = nullptr;
  decltype(&SCardListReaders) ListReaders = nullptr;
  decltype(&SCardGetStatusChange) GetStatusChange = nullptr;
  decltype(&SCardConnect) Connect = nullptr;
  decltype(&SCardDisconnect) Disconnect = nullptr;
  decltype(&SCardTransmit) Transmit = nullptr;
  decltype(&SCardGetAttrib) GetAttrib = nullptr;
};

template <typename Function>
bool Resolve(void* library, const char* name, Function& into) {
  into = reinterpret_cast<Function>(::dlsym(library, name));
  return into != nullptr;
}

std::optional<Client> LoadClient() {
  // Never unloaded: the client library keeps connections of its own.
  void* const library = ::dlopen(ClientLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return std::nullopt;
  Client client;
  const bool whole = Resolve(library, "SCardEstablishContext", client.EstablishContext) &&
                     Resolve(library, "SCardReleaseContext", client.ReleaseContext) &&
                     Resolve(library, "SCardListReaders", client.ListReaders) &&
                     Resolve(library, "SCardGetStatusChange", client.GetStatusChange) &&
                     Resolve(library, "SCardConnect", client.Connect) &&
                     Resolve(library, "SCardDisconnect", client.Disconnect) &&
                     Resolve(library, "SCardTransmit", client.Transmit) &&
                     Resolve(library, "SCardGetAttrib", client.GetAttrib);
  return whole ? std::optional(client) : std::nullopt;
}

PcscCode CodeOf(LONG told) {
  // pcsc-lite has the number of an unexpected error for it.
  if (told == SCARD_E_UNSUPPORTED_FEATURE) return PcscCode::UnsupportedFeature;
  return static_cast<PcscCode>(static_cast<std::uint32_t>(told));
}

SCARDCONTEXT Native(PcscContext context) {
  return static_cast<SCARDCONTEXT>(context);
}

std::uint32_t Number(DWORD told) {
  return static_cast<std::uint32_t>(told);
}

PcscCode GetStatusChange(const Client& client, PcscContext context, std::uint32_t milliseconds,
                         ReaderStatus& status) {
  SCARD_READERSTATE state{};
  state.szReader = status.Reader.c_str();
  state.dwCurrentState = status.Known;
  const LONG told = client.GetStatusChange(Native(context), milliseconds, &state, 1);
  status.Now = Number(state.dwEventState);
  const std::size_t atrLength = std::min<std::size_t>(state.cbAtr, std::size(state.rgbAtr));
  status.Atr.assign(state.rgbAtr, state.rgbAtr + atrLength);
  return CodeOf(told);
}

PcscCode Connect(const Client& client, PcscContext context, const std::string& reader,
                 CardSharing sharing, std::uint32_t protocols, PcscCard& card,
                 std::uint32_t& protocol) {
  SCARDHANDLE handle = 0;
  DWORD active = 0;
  const LONG told = client.Connect(Native(context), reader.c_str(), static_cast<DWORD>(sharing),
                                   protocols, &handle, &active);
  card = static_cast<PcscCard>(handle);
  protocol = Number(active);
  return CodeOf(told);
}

PcscCode Transmit(const Client& client, PcscCard card, std::uint32_t protocol, ByteView command,
                  std::span<std::uint8_t> answer, std::uint32_t& length) {
  const SCARD_IO_REQUEST request{protocol, sizeof(SCARD_IO_REQUEST)};
  DWORD count = answer.size();
  const LONG told = client.Transmit(static_cast<SCARDHANDLE>(card), &request, command.data(),
                                    command.size(), nullptr, answer.data(), &count);
  length = Number(count);
  return CodeOf(told);
}

}  // namespace

std::optional<PcscApi> LoadPcscApi() {
  // Read by the client library at its first context.
  constexpr int KeepsWhatIsSet = 0;
  (void)::setenv("PCSCLITE_NO_BLOCKING", "1", KeepsWhatIsSet);
  const std::optional<Client> loaded = LoadClient();
  if (!loaded) return std::nullopt;
  const Client client = *loaded;
  PcscApi api;
  api.EstablishContext = [client](PcscContext& context) {
    SCARDCONTEXT established = 0;
    const LONG told = client.EstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &established);
    context = static_cast<PcscContext>(established);
    return CodeOf(told);
  };
  api.ReleaseContext = [client](PcscContext context) {
    return CodeOf(client.ReleaseContext(Native(context)));
  };
  api.ListReaders = [client](PcscContext context, std::span<char> names, std::uint32_t& length) {
    DWORD count = names.size();
    const LONG told = client.ListReaders(Native(context), nullptr, names.data(), &count);
    length = Number(count);
    return CodeOf(told);
  };
  api.GetStatusChange = [client](auto&&... all) { return GetStatusChange(client, all...); };
  api.Connect = [client](auto&&... all) { return Connect(client, all...); };
  api.Disconnect = [client](PcscCard card, CardDisposition disposition) {
    return CodeOf(
        client.Disconnect(static_cast<SCARDHANDLE>(card), static_cast<DWORD>(disposition)));
  };
  api.Transmit = [client](auto&&... all) { return Transmit(client, all...); };
  api.GetAttrib = [client](PcscCard card, std::uint32_t attribute, std::span<std::uint8_t> value,
                           std::uint32_t& length) {
    DWORD count = value.size();
    const LONG told =
        client.GetAttrib(static_cast<SCARDHANDLE>(card), attribute, value.data(), &count);
    length = Number(count);
    return CodeOf(told);
  };
  return api;
}

}  // namespace ctapi::host
