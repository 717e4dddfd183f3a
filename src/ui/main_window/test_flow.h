#pragma once

#include <QString>

#include <optional>

#include "app/bas_mkt_test.h"
#include "diagnosis/read_loop.h"
#include "ui/main_window/egk_info.h"
#include "ui/main_window/front_end.h"
#include "ui/main_window/status_tab.h"

namespace kartocheck {

// The buttons of CmdB_MKt_Test, by index.
enum class Action { FullScan = 0, Diagnosis, ShowStatus, ReadCard, CopyData, ResetFields };

// The frames of Fram_Show, by index. Actions 0 to 3 show the frame of their own index.
enum class Frame { Wait = 0, DialogCheck, TerminalStatus, Data };

// Who asks the window to close: the user is asked back, program and system are not.
enum class CloseSource { User, Program, System };

// The flows behind the main window's controls. One action at a time; a close request during an
// action is kept until its end.
class TestFlow {
 public:
  TestFlow(Bas_MKT_Test& module, Dialogs& dialogs, Display& display, FrontEnd& frontEnd);

  // A click on button `index` of CmdB_MKt_Test. An index outside 0 to 5 does nothing.
  void Button(int index);

  // A click on option button `member`, 0 to 4, of Opti_Comx.
  void ChoosePort(int member);

  // A choice in the list of further ports, by index.
  void ChooseFurtherPort(int index);

  // A click on a status tab.
  void ChooseStatusTab();

  // Ends a running sweep over the further ports early.
  void EndSweep() { sweepEnded_ = true; }

  // True when the window may close now. The link is closed then.
  [[nodiscard]] bool MayClose(CloseSource source);

  // One port of a scan: checks it, and reads where a terminal was found.
  void ScanPort(int pn);

  // Looks for further ports and lists them.
  void SweepFurtherPorts();

  [[nodiscard]] StatusTab StatusTabOf(int slot) const;

  // What the eGK window shows of the current slot.
  [[nodiscard]] EgkInfo CurrentEgkInfo() const;

  // The menu's "&Validierung": whether eGK data are validated when they are read next.
  void SetValidation(bool on);
  [[nodiscard]] bool IsValidating() const { return module_.Validation.isOn; }

  // Replaces the held schema of a kind by the file's text. A file that cannot be read or holds no
  // markup is told, and the held text stays.
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
  void ShowFirstReadPort();
  void Diagnose();
  void DiagnosePort(int pn);
  void ShowStatus();
  void ShowTerminalStatus();
  void ReadCard();
  void CopyData();
  void ResetFields();

  void CheckAndOffer(int pn);
  void UseFurtherPort(std::optional<int> pn);
  QString ShowHint(int pn);
  [[nodiscard]] int LineOf(int pn) const;
  void SelectPort(int member);
  void ShowProgress(int percent);
  void ShowStatusText(QStringView text);
  void ShowFrame(Frame frame);
  void ShowCurrentData();
  [[nodiscard]] bool HasSelectedPort();
  [[nodiscard]] bool IsMobile(int pn) const;
  [[nodiscard]] ReadLoopSteps LoopSteps(int pn);

  Bas_MKT_Test& module_;
  Dialogs& dialogs_;
  Display& display_;
  FrontEnd& frontEnd_;
  Frame frame_ = Frame::Data;  // the one that is shown
  int progress_ = 0;
  bool sweepEnded_ = false;
};

}  // namespace kartocheck
