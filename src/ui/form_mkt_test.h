#pragma once

#include <QMainWindow>
#include <QPointer>

#include <array>
#include <functional>

#include "egk/vsd_kind.h"
#include "platform/display.h"
#include "ui/main_window/front_end.h"
#include "ui/main_window/program_facts.h"
#include "ui/main_window/test_flow.h"
#include "ui/main_window/test_report.h"
#include "ui/message_boxes.h"

class QAction;
class QDialog;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QSettings;

namespace kartocheck {

class ButtonPanel;
class DialogCheckFrame;
class InsuredDataFrame;
class PortFrame;
class TerminalAccessFrame;
class TerminalStatusFrame;
class WaitFrame;

// The program's one main window. It shows what it is given and reports what was pressed.
class Form_MKT_Test final : public QMainWindow, public Display, public FrontEnd {
  Q_OBJECT

 public:
  struct Options {
    bool simulation = false;        // terminals are simulated: the status bar says so
    QSettings* settings = nullptr;  // where size and position are kept; nowhere when null
    std::function<ProgramFacts()> facts = [] { return ProgramFacts(); };
  };

  explicit Form_MKT_Test(const Options& options);
  ~Form_MKT_Test() override;

  // The window's message boxes.
  [[nodiscard]] Dialogs& Boxes() { return boxes_; }

  // Draws the view state and the module's lamps from now on, and tells the flow what is pressed.
  // All three need the window to be made, so they come after construction; they end before it does.
  void Attach(TestFlow& flow, ViewState& view, Bas_MKT_Test& module);
  // Where the text of a test report comes from; without one the menu does not offer it.
  void OfferReport(std::function<TestReport()> makeReport);

  // The system ends the program (SIGTERM, end of the desktop session): an open box counts as
  // answered with Cancel or No, nothing more is asked, and the window closes, after the end of
  // the running action if there is one.
  void CloseForSystem();

  // Makes one of the frames 0 to 3 the visible one (wait, dialog check, terminal status, data).
  // False where it was visible already, or there is none of this index; nothing changes then.
  bool ShowFrameX(int frame);

  void ShowStatusText(const QString& text) override;
  void ShowScanResult(const ScanResult& result) override;
  void CopyToClipboard(const QString& text) override;
  void CloseNow() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void CreateFileMenu();
  void CreateHelpMenu();
  void AskForSchema(VsdKind kind);
  void ShowEgkInfo();
  void Escape();
  void ShowLateness(bool isLate);
  void ShowProgress(int percent);
  void ShowUserInformation();
  void CopyReport();
  void AskForReportFile();
  void SaveReportTo(const QString& name);
  void CreateFrames();
  void CreateStatusBar(bool simulation);
  void CreateLayout();
  void DrawView(ViewState& view);
  void DrawPorts(ViewState& view);
  void SetActionRunning(bool running);
  void UpdateEnabled();
  void RestoreGeometry();

  MessageBoxes boxes_;
  QSettings* settings_;
  std::function<ProgramFacts()> facts_;
  std::function<TestReport()> makeReport_;
  TestFlow* flow_ = nullptr;
  bool actionRunning_ = false;
  bool closing_ = false;           // closes without a question
  QPointer<QWidget> focusBefore_;  // had the focus when the running action began

  ButtonPanel* Pict_MKT_Test = nullptr;
  PortFrame* Fram_Comx = nullptr;
  TerminalAccessFrame* Fram_MKTStatus = nullptr;
  QPushButton* cmdeGK = nullptr;
  std::array<QWidget*, FrameCount> Fram_Show{};
  WaitFrame* wait_ = nullptr;
  DialogCheckFrame* dialogCheck_ = nullptr;
  TerminalStatusFrame* terminalStatus_ = nullptr;
  InsuredDataFrame* insuredData_ = nullptr;
  QLabel* Labl_Meldung = nullptr;  // what the status text leaves open
  QLabel* Labl_StatusText = nullptr;
  QPushButton* giveUp_ = nullptr;
  QString textBeforeLateness_;
  QProgressBar* ProgressBar1 = nullptr;

  QAction* mnuValidierung = nullptr;
  QMenu* mnuSchema = nullptr;
  QAction* mnuPruefbericht = nullptr;
  QAction* mnuPruefberichtSpeichern = nullptr;
};

}  // namespace kartocheck
