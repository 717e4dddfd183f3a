#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <winscard.h>

namespace ctapi::host {

// The functions of the PC/SC client library (PC/SC Workgroup, part 5) that this layer uses, and the
// clock that its waits are measured with.
struct PcscApi {
  std::function<decltype(SCardEstablishContext)> EstablishContext;
  std::function<decltype(SCardReleaseContext)> ReleaseContext;
  std::function<decltype(SCardListReaders)> ListReaders;
  std::function<decltype(SCardGetStatusChange)> GetStatusChange;
  std::function<decltype(SCardConnect)> Connect;
  std::function<decltype(SCardDisconnect)> Disconnect;
  std::function<decltype(SCardTransmit)> Transmit;
  std::function<decltype(SCardGetAttrib)> GetAttrib;
  std::function<std::chrono::steady_clock::time_point()> Now = std::chrono::steady_clock::now;
};

// The system's client library, loaded now; nothing where it is not installed. Where it would try
// again for ever, as long as another program holds a card, it tells the sharing violation instead.
[[nodiscard]] std::optional<PcscApi> LoadPcscApi();

}  // namespace ctapi::host
