#pragma once

#include "discovery/terminal_info.h"
#include "platform/dialogs.h"
#include "platform/port.h"
#include "terminal/ct_session.h"

namespace kartocheck {

enum class Readiness {
  Ready,     // a card or record is there, or the user was told why not
  NotReady,  // the card has to be asked for
};

// The link and the terminal of a status check.
struct StatusCheckTarget {
  CtSession& link;
  Port port;
  TerminalInfo& info;
  Dialogs& dialogs;
};

// Requests the card and interprets the answer. Opens the link, ending one that is still open first,
// and leaves it closed. Sets the record's output medium and SelectRefused flag where the answer
// tells; both stay until the port is scanned again.
[[nodiscard]] Readiness CheckStatus(const StatusCheckTarget& target);

}  // namespace kartocheck
