#include "app/bas_mkt_test.h"

#include "diagnosis/read_loop.h"
#include "discovery/port_check.h"
#include "kvk/read_dispatcher.h"

namespace kartocheck {

Bas_MKT_Test::Bas_MKT_Test(const Surroundings& surroundings)
    : display_(surroundings.display),
      eventLoop_(surroundings.eventLoop),
      dialogs_(surroundings.dialogs, ExitRequested),
      session_({.api = surroundings.api,
                .dialogs = surroundings.dialogs,
                .display = surroundings.display,
                .eventLoop = surroundings.eventLoop,
                .ports = Ports,
                .terminate = surroundings.terminate}) {}

void Bas_MKT_Test::CheckPort(int pn) {
  const int slot = SlotOf(pn);
  kartocheck::CheckPort(pn, {session_, Terminals[slot], Ports[slot], display_});
}

std::int16_t Bas_MKT_Test::StatusCheck(int /*pn*/) {
  return ReadyToRead;
}

std::int16_t Bas_MKT_Test::ReadCardData(int pn) {
  const int slot = SlotOf(pn);
  return kartocheck::ReadCardData({session_, pn, Terminals[slot], Insured[slot], Egk[slot],
                                   Validation, dialogs_, display_, eventLoop_});
}

void Bas_MKT_Test::ClearSlot(int slot) {
  kartocheck::ClearSlot(Terminals[slot], Insured[slot], Egk[slot]);
}

void Bas_MKT_Test::CloseLink() {
  session_.CtClose();
}

}  // namespace kartocheck
