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

// Connects to no card.
[[nodiscard]] ReaderTrouble FindReaderTrouble(PcscService& service);

}  // namespace ctapi::host
