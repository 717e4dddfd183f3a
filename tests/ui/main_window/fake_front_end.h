#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ui/main_window/front_end.h"
#include "ui/main_window/view_state.h"

namespace kartocheck::test {

// Records what the flows ask of the window and what they have to show, in order.
class FakeFrontEnd final : public FrontEnd {
 public:
  // From now on every change of the view state is noted.
  void Watch(ViewState& view) {
    WatchActions(view);
    WatchPorts(view);
    isWatching_ = true;
  }

  void ShowScanResult(const ScanResult& result) override {
    scanResults.push_back(result);
    Note("show scan result");
  }
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
  QStringList devices;
  std::map<int, QString> portHints;
  QStringList hintsWithoutReader;
  int chosenLine = -1;
  QString notice;
  std::function<void(const std::string&)> onCall;

  // What changes often is not among the calls but has a list of its own.
  std::vector<QString> diagnosisSteps;
  std::vector<int> progress;
  std::vector<int> shownFrames;
  std::vector<std::pair<int, bool>> enabledPorts;
  std::vector<int> slots;
  // Called with each of these, as "progress 20", "frame 3".
  std::function<void(const std::string&)> onChange;

 private:
  template <typename T, typename Draw>
  void On(Shown<T>& shown, Draw draw) {
    shown.Watch([this, draw](const T& value) {
      if (isWatching_) draw(value);
    });
  }

  void WatchActions(ViewState& view) {
    On(view.isActionRunning,
       [this](bool running) { Note(running ? "action starts" : "action ends"); });
    On(view.nextButton, [this](std::optional<Action> button) {
      if (button) Note("mark button " + std::to_string(static_cast<int>(*button)));
    });
    On(view.data, [this](const DataFrame& frame) {
      frames.push_back(frame);
      Note("show data");
    });
    On(view.diagnosedPort,
       [this](const QString& name) { Note("diagnosed port " + name.toStdString()); });
    On(view.diagnosisStep, [this](const QString& step) {
      if (step.isEmpty()) return;
      diagnosisSteps.push_back(step);
      Change("step " + step.toStdString());
    });
    On(view.progress, [this](int percent) {
      progress.push_back(percent);
      Change("progress " + std::to_string(percent));
    });
    On(view.frame, [this](Frame frame) {
      const int index = static_cast<int>(frame);
      if (!shownFrames.empty() && shownFrames.back() == index) return;
      shownFrames.push_back(index);
      Change("frame " + std::to_string(index));
    });
  }

  void WatchPorts(ViewState& view) {
    for (int slot = 1; slot <= SlotCount; ++slot) WatchSlot(view, slot);
    // Hints are noted where there is one.
    On(view.hintsWithoutReader, [this](const QStringList& hints) {
      hintsWithoutReader = hints;
      if (!hints.isEmpty()) Note("hints " + hints.join(u" / ").toStdString());
    });
    On(view.furtherPorts, [this](const PortList& list) {
      portList.clear();
      devices.clear();
      for (const ListedPort& port : list.ports) {
        portList.append(port.line);
        devices.append(port.device);
      }
      chosenLine = list.chosen;
      Note("show port list");
    });
    On(view.markedPort, [this](int member) { Note("mark port " + std::to_string(member)); });
    On(view.furtherPortName,
       [this](const QString& name) { Note("name further port " + name.toStdString()); });
    On(view.isSearching,
       [this](bool isSearching) { Change(isSearching ? "search begins" : "no search"); });
    On(view.notice, [this](const QString& text) {
      notice = text;
      if (!text.isEmpty()) Note("notice " + text.toStdString());
    });
    On(view.tabInFront, [this](int slot) { Note("show status tab " + std::to_string(slot)); });
  }

  void WatchSlot(ViewState& view, int slot) {
    On(view.portHints[slot], [this, slot](const QString& hint) {
      portHints[slot] = hint;
      if (!hint.isEmpty()) Note("hint " + std::to_string(slot) + " " + hint.toStdString());
    });
    On(view.isPortEnabled[slot], [this, slot](bool enabled) {
      enabledPorts.emplace_back(slot, enabled);
      Change((enabled ? "enable port " : "disable port ") + std::to_string(slot));
    });
    On(view.statusTabs[slot], [this, slot](const StatusTab& /*values*/) {
      slots.push_back(slot);
      Change("slot " + std::to_string(slot));
    });
  }

  void Note(const std::string& call) {
    calls.push_back(call);
    if (onCall) onCall(call);
  }
  void Change(const std::string& change) {
    if (onChange) onChange(change);
  }

  bool isWatching_ = false;
};

}  // namespace kartocheck::test
