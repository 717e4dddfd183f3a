#pragma once

#include <cstdint>

#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "egk/egk_reader.h"
#include "kvk/insured_data.h"
#include "platform/dialogs.h"
#include "terminal/ct_session.h"

namespace kartocheck {

// Result of a read whose question " Noch einmal versuchen? " was answered with Yes.
inline constexpr std::int16_t TryAgain = 1;

// The link and the records of one slot.
struct ReadTarget {
  CtSession& link;
  int pn;  // port number behind the slot
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
// Returns 0 when data were read, TryAgain when the user wants another try, otherwise the CT-API
// code of a failed open or -1. The slot is emptied first, so that nothing of an earlier person
// shows, and again on every result but 0; DataRead and EgkData tell afterwards what the slot holds.
[[nodiscard]] std::int16_t ReadCardData(const ReadTarget& target);

// Empties the slot: insured data, eGK data and the two flags that tell of them.
void ClearSlot(TerminalInfo& info, InsuredData& insured, EgkData& egk);

}  // namespace kartocheck
