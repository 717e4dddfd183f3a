#pragma once

#include "discovery/terminal_info.h"
#include "platform/display.h"
#include "terminal/ct_session.h"
#include "terminal/port_entry.h"

namespace kartocheck {

// The link and the records of one slot.
struct PortCheckTarget {
  CtSession& link;
  TerminalInfo& info;
  PortEntry& port;
  Display& display;
};

// Finds out whether a terminal answers on the port and which one it is. The outcome is in the
// slot's two records; the link is closed again.
void CheckPort(int pn, const PortCheckTarget& target);

}  // namespace kartocheck
