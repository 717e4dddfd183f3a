#include "host/reader_trouble.h"

namespace ctapi::host {

ReaderTrouble FindReaderTrouble(PcscService& service) {
  if (!service.IsInstalled()) return ReaderTrouble::NotInstalled;
  std::vector<std::string> readers;
  if (service.List(readers) != PcscResult::Ok) return ReaderTrouble::NoService;
  if (readers.empty()) return ReaderTrouble::NoReader;
  bool isHeld = false;
  for (const std::string& reader : readers) {
    ReaderState state;
    if (service.Query(reader, state) != PcscResult::Ok || !state.HasCard) continue;
    if (!state.IsHeld) return ReaderTrouble::None;
    isHeld = true;
  }
  return isHeld ? ReaderTrouble::CardHeld : ReaderTrouble::None;
}

ReaderTrouble FindReaderTrouble(PcscService& service, const std::string& reader) {
  ReaderState state;
  const bool isHeld =
      service.Query(reader, state) == PcscResult::Ok && state.HasCard && state.IsHeld;
  return isHeld ? ReaderTrouble::CardHeld : ReaderTrouble::None;
}

}  // namespace ctapi::host
