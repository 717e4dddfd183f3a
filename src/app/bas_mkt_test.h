#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "app/closing_dialogs.h"
#include "diagnosis/hint_texts.h"
#include "diagnosis/status_check.h"
#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "egk/vsd_schema.h"
#include "kvk/insured_data.h"
#include "kvk/read_dispatcher.h"
#include "platform/ct_api.h"
#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/port_directory.h"
#include "platform/serial_port.h"
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
    SerialPort& serial;
    const PortDirectory& directory;
    Terminate terminate;
  };

  explicit Bas_MKT_Test(const Surroundings& surroundings);
  Bas_MKT_Test(const Bas_MKT_Test&) = delete;
  Bas_MKT_Test& operator=(const Bas_MKT_Test&) = delete;

  // The port that scan, status check, diagnosis and read work on: 1 to 4, or the further port's
  // number. Empty while the entry for further ports is chosen but none was found.
  std::optional<int> SelectedPort = 1;
  // The slot whose data are shown, copied and reset, 1 to 5.
  int CurrentPort = 1;

  bool Busy = false;           // an action runs
  bool ExitRequested = false;  // the window was asked to close during an action

  // Further ports that answered a sweep, in the order found, and the one that slot 5 stands for.
  std::vector<int> FurtherPorts;
  std::optional<int> FurtherPort;

  const HintTexts Hints;

  PerSlot<PortEntry> Ports;
  PerSlot<TerminalInfo> Terminals;
  PerSlot<InsuredData> Insured;
  PerSlot<EgkData> Egk;

  ValidationSettings Validation;  // the switch and the three schemas

  // Message boxes of the procedures; silent once the program is asked to end.
  [[nodiscard]] Dialogs& Boxes() { return dialogs_; }

  // Checks the port and identifies the terminal on it. Fills the port's slot; nothing of an earlier
  // terminal or card stays in it, but that a terminal once answered there.
  void CheckPort(int pn);

  // Looks for further ports. beforePort: see SweepCtApiPorts.
  void SweepPorts(const std::function<bool(int done)>& beforePort);

  // Makes slot 5 stand for this port, or for none; another one than before empties it. While slot 5
  // is the current one, the port is also the selected one.
  void UseFurtherPort(std::optional<int> pn);

  // What the system knows of the port on a slot.
  [[nodiscard]] QString IdentificationOf(int slot) const;

  // Why the port cannot be used and what to do about it; empty where nothing is known to be in the
  // way, where data were read on it, and while the link is open.
  [[nodiscard]] QString HintFor(int pn) const;

  // Why the last sweep found no USB device, and what to do about it; empty where it found one.
  [[nodiscard]] QStringList HintsWithoutReader() const;

  // Is a card or record ready?
  [[nodiscard]] Readiness StatusCheck(int pn);

  // Reads the card or stored record on the port into its slot.
  [[nodiscard]] ReadOutcome ReadCardData(int pn);

  // Runs the guided questions, which end with a check of the port or with the terminals' status.
  void RunGuidedDiagnosis(const std::function<void()>& checkPort,
                          const std::function<void()>& showTerminalStatus);

  // Empties the slot's insured data and eGK data.
  void ClearSlot(int slot);

  [[nodiscard]] bool IsLinkOpen() const { return session_.IsOpen(); }
  void CloseLink();

 private:
  [[nodiscard]] QString SettingsOf(int pn) const;

  Display& display_;
  EventLoop& eventLoop_;
  SerialPort& serial_;
  const PortDirectory& directory_;
  ClosingDialogs dialogs_;
  CtSession session_;
};

}  // namespace kartocheck
