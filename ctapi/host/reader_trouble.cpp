#include "host/reader_trouble.h"

namespace ctapi::host {

PortTroubleKind FindReaderTrouble(PcscService& service) {
  if (!service.IsInstalled()) return PortTroubleKind::NotInstalled;
  std::vector<std::string> readers;
  if (const PcscResult result = service.List(readers); result != PcscResult::Ok) {
    return TroubleOf(result);
  }
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

PortTroubleKind TroubleOf(PcscResult result) {
  switch (result) {
    case PcscResult::NoService:
      return PortTroubleKind::NoService;
    case PcscResult::Refused:
      return PortTroubleKind::ServiceRefuses;
    case PcscResult::NoReader:
      return PortTroubleKind::ReaderGone;
    case PcscResult::Mute:
      return PortTroubleKind::MuteCard;
    case PcscResult::Held:
      return PortTroubleKind::CardHeld;
    case PcscResult::Ok:
    case PcscResult::NoCard:
    case PcscResult::CardReset:
    case PcscResult::TooLong:
    case PcscResult::Timeout:
    case PcscResult::Broken:
      break;
  }
  return PortTroubleKind::None;
}

}  // namespace ctapi::host
