#pragma once

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

// How an eGK read ended. Failures of single sections are told and do not stop it.
enum class EgkResult {
  Finished,
  Stopped,  // early, and told; the slot's insured data are as they were, a record is not erased
};

// Reads the eGK in the terminal's first slot: serial number, VD, PD, GVD and EF.StatusVD.
[[nodiscard]] EgkResult ReadEgkFromCard(const EgkTarget& target);

// Reads the eGK record that a mobile terminal keeps, and erases it there.
[[nodiscard]] EgkResult ReadEgkFromMobile(const EgkTarget& target);

}  // namespace kartocheck
