#pragma once

#include <cstdint>

#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "egk/vsd_schema.h"
#include "kvk/insured_data.h"
#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "terminal/ct_session.h"

namespace kartocheck {

// The open link, the records of the slot that an eGK read writes, and how documents are validated.
struct EgkTarget {
  CtSession& link;
  TerminalInfo& info;
  InsuredData& insured;
  EgkData& egk;
  const ValidationSettings& validation;
  Dialogs& dialogs;
  Display& display;
  EventLoop& eventLoop;
};

// Reads the eGK in the terminal's first slot: serial number, VD, PD, GVD and EF.StatusVD. Single
// sections may fail and are reported. Returns 0 when the read ran to its end, -1 when it stopped
// early; nothing is stored into the slot's insured data then.
[[nodiscard]] std::int16_t ReadEgkFromCard(const EgkTarget& target);

// Reads the eGK record that a mobile terminal keeps, and erases it there. Returns 0 when the record
// was processed to its end, -1 when the read stopped before the erase.
[[nodiscard]] std::int16_t ReadEgkFromMobile(const EgkTarget& target);

}  // namespace kartocheck
