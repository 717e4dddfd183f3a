#pragma once

#include <QString>
#include <QStringList>

#include "ui/main_window/data_frame.h"
#include "ui/main_window/scan_result.h"

namespace kartocheck {

// What the flows ask of the front end that started them, besides messages and display.
class FrontEnd {
 public:
  virtual void ShowData(const DataFrame& frame) = 0;
  // Empties the value fields; title and labels stay.
  virtual void ClearData() = 0;

  // The lines of the list of further ports; the index of the chosen one, or -1.
  virtual void ShowPortList(const QStringList& lines, int chosen) = 0;
  // Marks a member of the port choice, 0 to 4, without reporting it as a click.
  virtual void MarkPort(int member) = 0;
  // What keeps the port of a slot, 1 to 5, from being used; empty where nothing does.
  virtual void ShowPortHint(int slot, const QString& hint) = 0;
  // Why the list of further ports names no reader; empty where nothing is to be said.
  virtual void ShowHintsWithoutReader(const QStringList& hints) = 0;
  // Name of the further port, on the fifth tab.
  virtual void NameFurtherPort(const QString& name) = 0;
  // Brings the status tab of a slot, 1 to 5, to the front.
  virtual void ShowStatusTab(int slot) = 0;
  // Marks a button of the panel, 0 to 5, as the one that was used last.
  virtual void MarkButton(int index) = 0;
  // The port that the guided diagnosis is about.
  virtual void ShowDiagnosedPort(const QString& name) = 0;
  // Shows the result of a full scan and waits until the user has seen it.
  virtual void ShowScanResult(const ScanResult& result) = 0;

  // While an action runs, whatever could start a second one is disabled.
  virtual void SetActionRunning(bool running) = 0;
  virtual void CopyToClipboard(const QString& text) = 0;
  // Closes the program's window without a question.
  virtual void CloseNow() = 0;

  FrontEnd(const FrontEnd&) = delete;
  FrontEnd& operator=(const FrontEnd&) = delete;

 protected:
  FrontEnd() = default;
  virtual ~FrontEnd() = default;
};

}  // namespace kartocheck
