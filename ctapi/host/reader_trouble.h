#pragma once

#include "host/pcsc_service.h"

namespace ctapi::host {

// Why no PC/SC reader can be used, the first reason that holds.
enum class ReaderTrouble {
  None,
  NotInstalled,  // the client library of PC/SC is missing
  NoService,     // the service is not running, or refuses this user
  NoReader,      // no reader is attached, or no driver takes it
  CardHeld,      // every card that is there is held by another program
};

// Both connect to no card.
[[nodiscard]] ReaderTrouble FindReaderTrouble(PcscService& service);
// The same for one of the attached readers: another one may be free. CardHeld or None.
[[nodiscard]] ReaderTrouble FindReaderTrouble(PcscService& service, const std::string& reader);

}  // namespace ctapi::host
