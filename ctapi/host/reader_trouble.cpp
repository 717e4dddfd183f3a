#include "host/reader_trouble.h"

namespace ctapi::host {

PortTroubleKind FindReaderTrouble(PcscService& service) {
  if (!service.IsInstalled()) return PortTroubleKind::NotInstalled;
  std::vector<std::string> readers;
  if (service.List(readers) != PcscResult::Ok) return PortTroubleKind::NoService;
  if (readers.empty()) return PortTroubleKind::NoReader;
  bool isHeld = false;
  for (const std::string& reader : readers) {
    ReaderState state;
    if (service.Query(reader, state) != PcscResult::Ok || !state.HasCard) continue;
    if (!state.IsHeld) return PortTroubleKind::None;
    isHeld = true;
  }
  return isHeld ? PortTroubleKind::CardHeld : PortTroubleKind::None;
}

PortTroubleKind FindReaderTrouble(PcscService& service, const std::string& reader) {
  ReaderState state;
  const bool isHeld =
      service.Query(reader, state) == PcscResult::Ok && state.HasCard && state.IsHeld;
  return isHeld ? PortTroubleKind::CardHeld : PortTroubleKind::None;
}

}  // namespace ctapi::host
