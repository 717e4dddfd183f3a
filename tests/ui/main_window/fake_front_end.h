#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ui/main_window/front_end.h"

namespace kartocheck::test {

// Records what the flows ask of the front end, in order.
class FakeFrontEnd final : public FrontEnd {
 public:
  void ShowData(const DataFrame& frame) override {
    frames.push_back(frame);
    Note("show data");
  }
  void ClearData() override { Note("clear data"); }
  // Hints are noted where there is one.
  void ShowPortHint(int slot, const QString& hint) override {
    portHints[slot] = hint;
    if (!hint.isEmpty()) Note("hint " + std::to_string(slot) + " " + hint.toStdString());
  }
  void ShowHintsWithoutReader(const QStringList& hints) override {
    hintsWithoutReader = hints;
    if (!hints.isEmpty()) Note("hints " + hints.join(u" / ").toStdString());
  }
  void ShowPortList(const QStringList& lines, int chosen) override {
    portList = lines;
    chosenLine = chosen;
    Note("show port list");
  }
  void MarkPort(int member) override { Note("mark port " + std::to_string(member)); }
  void NameFurtherPort(const QString& name) override {
    Note("name further port " + name.toStdString());
  }
  void ShowStatusTab(int slot) override { Note("show status tab " + std::to_string(slot)); }
  void MarkButton(int index) override { Note("mark button " + std::to_string(index)); }
  void ShowDiagnosedPort(const QString& name) override {
    Note("diagnosed port " + name.toStdString());
  }
  void ShowScanResult(const ScanResult& result) override {
    scanResults.push_back(result);
    Note("show scan result");
  }
  void SetActionRunning(bool running) override { Note(running ? "action starts" : "action ends"); }
  void CopyToClipboard(const QString& text) override {
    clipboard.push_back(text);
    Note("copy");
  }
  void CloseNow() override { Note("close window"); }

  std::vector<std::string> calls;
  std::vector<DataFrame> frames;
  std::vector<QString> clipboard;
  std::vector<ScanResult> scanResults;
  QStringList portList;
  std::map<int, QString> portHints;
  QStringList hintsWithoutReader;
  int chosenLine = -1;
  std::function<void(const std::string&)> onCall;

 private:
  void Note(const std::string& call) {
    calls.push_back(call);
    if (onCall) onCall(call);
  }
};

}  // namespace kartocheck::test
