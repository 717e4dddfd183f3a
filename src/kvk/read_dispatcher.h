#pragma once

#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "egk/egk_reader.h"
#include "kvk/insured_data.h"
#include "platform/dialogs.h"
#include "platform/port.h"
#include "terminal/ct_session.h"

namespace kartocheck {

enum class ReadOutcome {
  Done,
  TryAgain,  // the question " Noch einmal versuchen? " was answered with Yes
  Failed,    // told, where there was something to tell
};

// The link and the records of one slot.
struct ReadTarget {
  CtSession& link;
  Port port;  // behind the slot
  TerminalInfo& info;
  InsuredData& insured;
  EgkData& egk;
  const ValidationSettings& validation;
  Dialogs& dialogs;
  Display& display;
  EventLoop& eventLoop;
};

// Reads whatever card or stored record the terminal offers: opens the link, resets the terminal,
// requests the card and hands KVK and eGK to their readers. A mobile terminal's record is erased
// after the user agreed. Every way out past the open resets the terminal and closes the link.
//
// The slot is emptied first, so that nothing of an earlier person shows, and again on every outcome
// but Done; DataRead and EgkData tell afterwards what the slot holds. An eGK's serial number alone
// is no data.
[[nodiscard]] ReadOutcome ReadCardData(const ReadTarget& target);

// Empties the slot: insured data, eGK data and the two flags that tell of them.
void ClearSlot(TerminalInfo& info, InsuredData& insured, EgkData& egk);

}  // namespace kartocheck
