#pragma once

#include <cstdint>

#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "kvk/insured_data.h"
#include "platform/dialogs.h"
#include "terminal/ct_session.h"

namespace kartocheck {

// The open link and the records of the slot that an eGK read writes.
struct EgkTarget {
  CtSession& link;
  TerminalInfo& info;
  InsuredData& insured;
  EgkData& egk;
  Dialogs& dialogs;
};

// Reads the eGK in the terminal's first slot. Returns 0 when the read ran to its end, -1 when it
// stopped early after a message.
[[nodiscard]] std::int16_t ReadEgkFromCard(const EgkTarget& target);

// Reads and erases the eGK record that a mobile terminal keeps. Results as above.
[[nodiscard]] std::int16_t ReadEgkFromMobile(const EgkTarget& target);

}  // namespace kartocheck
