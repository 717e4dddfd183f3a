#pragma once

#include <cstdint>

#include "discovery/terminal_info.h"
#include "platform/dialogs.h"
#include "terminal/ct_session.h"

namespace kartocheck {

// Results of a status check.
inline constexpr std::int16_t ReadyToRead =
    1;  // a card or record is ready, or the user was told why not
inline constexpr std::int16_t NotReady = 0;

// The link and the terminal of a status check.
struct StatusCheckTarget {
  CtSession& link;
  int pn;
  TerminalInfo& info;
  Dialogs& dialogs;
};

// Requests the card and interprets the answer. Opens the link, ending one that is still open first,
// and leaves it closed. Sets the record's output medium and SelectRefused flag where the answer
// tells.
[[nodiscard]] std::int16_t CheckStatus(const StatusCheckTarget& target);

}  // namespace kartocheck
