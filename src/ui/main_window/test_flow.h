#pragma once

#include <QString>

#include "app/bas_mkt_test.h"
#include "platform/pending_call.h"
#include "ui/main_window/egk_info.h"
#include "ui/main_window/front_end.h"
#include "ui/main_window/port_flow.h"
#include "ui/main_window/view_state.h"

namespace kartocheck {

// Who asks the window to close: the user is asked back, program and system are not.
enum class CloseSource { User, Program, System };

// The flows behind the main window's controls. One action at a time; a close request during an
// action is kept until its end.
class TestFlow {
 public:
  TestFlow(Bas_MKT_Test& module, Dialogs& dialogs, Display& display, ViewState& view,
           FrontEnd& frontEnd);

  // A click on button `index` of CmdB_MKt_Test. An index outside 0 to 5 does nothing.
  void Button(int index);
  // A click on option button `member`, 0 to 4, of Opti_Comx. The one for further ports looks for
  // them while none is known.
  void ChoosePort(int member);
  // The same button reached by an arrow key, which starts no search.
  void MoveToPort(int member);
  // A choice in the list of further ports, by index.
  void ChooseFurtherPort(int index);
  // A click on a status tab.
  void ChooseStatusTab();
  // Ends the search for terminals that runs; nothing where none does. A card that is being read is
  // read to its end.
  void EndSearch();
  // From now on tells of a call to the terminal that does not come back. pending: outlives this.
  void Watch(PendingCall& pending);
  // Gives up the call that is late; nothing where none is.
  void GiveUp();
  // True when the window may close now. The link is closed then.
  [[nodiscard]] bool MayClose(CloseSource source);

  // What the eGK window shows of the current slot.
  [[nodiscard]] EgkInfo CurrentEgkInfo() const;
  // The menu's "&Validierung": whether eGK data are validated when they are read next.
  void SetValidation(bool on);
  // Replaces the held schema of a kind by the file's. One that a document could not be validated
  // against is told, and the held one stays.
  void LoadSchema(VsdKind kind, const QString& file);

 private:
  class RunningAction;
  template <typename Work>
  void RunAction(Work work);
  void Run(Action action);
  void FullScan();
  void ScanComPorts();
  void ScanFurtherPorts();
  void ShowScanResult();
  [[nodiscard]] bool ShowFirstReadPort();
  void ChooseAnsweringPort();
  void ShowStatus();
  void CopyData();
  void ResetFields();
  [[nodiscard]] bool HasSelectedPort();

  Bas_MKT_Test& module_;
  Dialogs& dialogs_;
  Display& display_;
  ViewState& view_;
  FrontEnd& frontEnd_;
  PortFlow ports_;
  PendingCall* pending_ = nullptr;  // none where every call comes back
};

}  // namespace kartocheck
