#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "app/closing_dialogs.h"
#include "diagnosis/hint_texts.h"
#include "diagnosis/status_check.h"
#include "discovery/port_check.h"
#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "egk/vsd_schema.h"
#include "kvk/insured_data.h"
#include "kvk/read_dispatcher.h"
#include "platform/ct_api.h"
#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/lamps.h"
#include "platform/port.h"
#include "platform/port_directory.h"
#include "platform/serial_port.h"
#include "platform/terminate.h"
#include "terminal/ct_session.h"
#include "terminal/port_entry.h"
#include "terminal/slot.h"

namespace kartocheck {

// The shared state of the program, and its procedures bound to that state. There is one, created in
// main. Front ends read the records; the procedures alone change them.
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
    // Called when the program is asked to end during an action.
    std::function<void()> onExitRequest{};
  };

  explicit Bas_MKT_Test(const Surroundings& surroundings);
  Bas_MKT_Test(const Bas_MKT_Test&) = delete;
  Bas_MKT_Test& operator=(const Bas_MKT_Test&) = delete;

  // The records of a slot, 1 to 5.
  [[nodiscard]] const PortEntry& PortOf(int slot) const { return ports_[slot]; }
  [[nodiscard]] const TerminalInfo& TerminalOf(int slot) const { return terminals_[slot]; }
  [[nodiscard]] const InsuredData& InsuredOf(int slot) const { return insured_[slot]; }
  [[nodiscard]] const EgkData& EgkOf(int slot) const { return egk_[slot]; }
  [[nodiscard]] const PerSlot<PortEntry>& Ports() const { return ports_; }
  [[nodiscard]] const PerSlot<TerminalInfo>& Terminals() const { return terminals_; }
  // The activity lamps of the link.
  [[nodiscard]] Lamps& LinkLamps() { return lamps_; }
  [[nodiscard]] const HintTexts& Hints() const { return hints_; }

  // The port that scan, status check, diagnosis and read work on. Empty while the entry for further
  // ports is chosen but none was found.
  [[nodiscard]] std::optional<Port> SelectedPort() const { return selectedPort_; }
  // The slot whose data are shown, copied and reset, 1 to 5.
  [[nodiscard]] int CurrentSlot() const { return currentSlot_; }
  // Makes the slot the current one and the port that it stands for the selected one.
  void SelectSlot(int slot);
  // The port that a slot stands for; slot 5 may stand for none.
  [[nodiscard]] std::optional<Port> PortAt(int slot) const;

  // Further ports that answered a sweep, in the order found, and the one that slot 5 stands for.
  [[nodiscard]] const std::vector<Port>& FurtherPorts() const { return furtherPorts_; }
  [[nodiscard]] std::optional<Port> FurtherPort() const { return furtherPort_; }
  // Makes slot 5 stand for this port, or for none; another one than before empties it. While slot 5
  // is the current one, the port is also the selected one.
  void UseFurtherPort(std::optional<Port> port);
  // Looks for further ports. beforePort: see SweepCtApiPorts.
  void SweepPorts(const std::function<bool(int done)>& beforePort);

  // Whether an action runs.
  [[nodiscard]] bool IsBusy() const { return busy_; }
  void SetBusy(bool busy) { busy_ = busy; }
  // Whether the program was asked to end during an action. Message boxes stay silent then.
  [[nodiscard]] bool IsExitRequested() const { return exitRequested_; }
  void RequestExit();
  // Takes the request back; true where there was one.
  [[nodiscard]] bool TakeExitRequest();
  // Message boxes of the procedures; silent once the program is asked to end.
  [[nodiscard]] Dialogs& Boxes() { return dialogs_; }

  // How eGK data are validated when they are read next.
  [[nodiscard]] const ValidationSettings& Validation() const { return validation_; }
  void SetValidation(bool on) { validation_.isOn = on; }
  void SetSchema(VsdKind kind, const HeldSchema& schema) { validation_.schemas[kind] = schema; }
  void LoadSchemas(const QStringList& directories);

  // What the system knows of the port on a slot.
  [[nodiscard]] QString IdentificationOf(int slot) const;
  // What the system, or the library, calls the device on the port; empty where it is not known.
  [[nodiscard]] QString IdentificationOf(Port port) const;
  // Why the port cannot be used and what to do about it; empty where nothing is known to be in the
  // way, where data were read on it, and while the link is open.
  [[nodiscard]] QString HintFor(Port port) const;
  // Why the last sweep found no USB device, and what to do about it; empty where it found one.
  [[nodiscard]] QStringList HintsWithoutReader() const;

  // Checks the port and identifies the terminal on it. Fills the port's slot, which is emptied
  // first: nothing of an earlier terminal or card stays in it but what is to be remembered.
  // goesOn: asked before the link is opened; false ends the check there.
  void CheckPort(
      Port port, Remember remember = Remember::ThatItAnswered,
      const std::function<bool()>& goesOn = [] { return true; });
  // Is a card or record ready?
  [[nodiscard]] Readiness StatusCheck(Port port);
  // Reads the card or stored record on the port into its slot.
  [[nodiscard]] ReadOutcome ReadCardData(Port port);
  // Empties the slot's insured data and eGK data.
  void ClearSlot(int slot);
  // Empties all records of the slot: its port counts as not checked.
  void EmptySlot(int slot);

  // The port of the link that was opened last.
  [[nodiscard]] std::optional<Port> LinkPort() const;
  // As long as what is returned lives, `show` is called before the fatal message, when the slots
  // hold what was read so far.
  [[nodiscard]] CtSession::BeforeFatal BeforeFatalMessage(std::function<void()> show) {
    return {session_, std::move(show)};
  }

  [[nodiscard]] bool IsLinkOpen() const { return session_.IsOpen(); }
  // Closes the link where it is open.
  void CloseLink();

 protected:
  PerSlot<PortEntry> ports_;
  PerSlot<TerminalInfo> terminals_;
  PerSlot<InsuredData> insured_;
  PerSlot<EgkData> egk_;
  std::optional<Port> selectedPort_ = Port(1);
  int currentSlot_ = 1;
  std::vector<Port> furtherPorts_;
  std::optional<Port> furtherPort_;
  bool busy_ = false;
  bool exitRequested_ = false;
  ValidationSettings validation_;

 private:
  [[nodiscard]] QString SettingsOf(Port port) const;

  const HintTexts hints_;
  Lamps lamps_;
  Display& display_;
  EventLoop& eventLoop_;
  SerialPort& serial_;
  const PortDirectory& directory_;
  ClosingDialogs dialogs_;
  CtSession session_;
  std::function<void()> onExitRequest_;
};

}  // namespace kartocheck
