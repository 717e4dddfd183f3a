#pragma once

#include "host/pcsc_service.h"
#include "protocol/port_info.h"

namespace ctapi::host {

// Why no PC/SC reader can be used, the first reason that holds. Connects to no card.
[[nodiscard]] PortTroubleKind FindReaderTrouble(PcscService& service);
// The same for one of the attached readers: another one may be free. CardHeld or None.
[[nodiscard]] PortTroubleKind FindReaderTrouble(PcscService& service, const std::string& reader);
// Why a call on a reader did not succeed.
[[nodiscard]] PortTroubleKind TroubleOf(PcscResult result);

}  // namespace ctapi::host
