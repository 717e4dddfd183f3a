#include "host/pcsc_api.h"

#include <cstdlib>
#include <dlfcn.h>

namespace ctapi::host {

namespace {

constexpr const char* ClientLibrary = "libpcsclite.so.1";

template <typename Function>
bool Resolve(void* library, const char* name, std::function<Function>& into) {
  void* const address = ::dlsym(library, name);
  if (address == nullptr) return false;
  into = reinterpret_cast<Function*>(address);
  return true;
}

}  // namespace

std::optional<PcscApi> LoadPcscApi() {
  // Read by the client library at its first context.
  constexpr int KeepsWhatIsSet = 0;
  (void)::setenv("PCSCLITE_NO_BLOCKING", "1", KeepsWhatIsSet);
  // Never unloaded: the client library keeps connections of its own.
  void* const library = ::dlopen(ClientLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return std::nullopt;
  PcscApi api;
  const bool whole = Resolve(library, "SCardEstablishContext", api.EstablishContext) &&
                     Resolve(library, "SCardReleaseContext", api.ReleaseContext) &&
                     Resolve(library, "SCardListReaders", api.ListReaders) &&
                     Resolve(library, "SCardGetStatusChange", api.GetStatusChange) &&
                     Resolve(library, "SCardConnect", api.Connect) &&
                     Resolve(library, "SCardDisconnect", api.Disconnect) &&
                     Resolve(library, "SCardTransmit", api.Transmit) &&
                     Resolve(library, "SCardGetAttrib", api.GetAttrib);
  if (!whole) return std::nullopt;
  return api;
}

}  // namespace ctapi::host
