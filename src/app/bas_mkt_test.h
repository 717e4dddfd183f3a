#pragma once

#include <cstdint>

#include "app/closing_dialogs.h"
#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "egk/vsd_schema.h"
#include "kvk/insured_data.h"
#include "platform/ct_api.h"
#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/terminate.h"
#include "terminal/ct_session.h"
#include "terminal/port_entry.h"
#include "terminal/slot.h"

namespace kartocheck {

// The shared state of the program, and its procedures bound to that state. There is one, created in
// main; front ends read the records and call the procedures.
class Bas_MKT_Test {
 public:
  struct Surroundings {
    CtApi& api;
    Dialogs& dialogs;
    Display& display;
    EventLoop& eventLoop;
    Terminate terminate;
  };

  explicit Bas_MKT_Test(const Surroundings& surroundings);
  Bas_MKT_Test(const Bas_MKT_Test&) = delete;
  Bas_MKT_Test& operator=(const Bas_MKT_Test&) = delete;

  // The port that scan, status check, diagnosis and read work on: 1 to 4, or the further port's
  // number.
  int SelectedPort = 1;
  // The slot whose data are shown, copied and reset, 1 to 5.
  int CurrentPort = 1;

  bool Busy = false;           // an action runs
  bool ExitRequested = false;  // the window was asked to close during an action

  PerSlot<PortEntry> Ports;
  PerSlot<TerminalInfo> Terminals;
  PerSlot<InsuredData> Insured;
  PerSlot<EgkData> Egk;

  ValidationSettings Validation;  // the switch and the three schemas

  // Message boxes of the procedures; silent once the program is asked to end.
  [[nodiscard]] Dialogs& Boxes() { return dialogs_; }

  // Checks the port and identifies the terminal on it. Fills the port's slot.
  void CheckPort(int pn);

  // Is a card or record ready? 1 when it is or the user was told why not, 0 otherwise.
  [[nodiscard]] std::int16_t StatusCheck(int pn);

  // Reads the card or stored record on the port into its slot. 0 done, 1 another try is wanted.
  [[nodiscard]] std::int16_t ReadCardData(int pn);

  // Empties the slot's insured data and eGK data.
  void ClearSlot(int slot);

  [[nodiscard]] bool IsLinkOpen() const { return session_.IsOpen(); }
  void CloseLink();

 private:
  Display& display_;
  EventLoop& eventLoop_;
  ClosingDialogs dialogs_;
  CtSession session_;
};

}  // namespace kartocheck
