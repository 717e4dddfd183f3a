#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/display.h"

namespace kartocheck::test {

// Records what was shown, in order.
class FakeDisplay final : public Display {
 public:
  void ShowStatusText(const QString& text) override {
    statusTexts.push_back(text);
    Note("status " + text.toStdString());
  }
  void ShowProgress(int percent) override {
    progress.push_back(percent);
    Note("progress " + std::to_string(percent));
  }
  bool ShowFrameX(int frame) override {
    const bool changed = frames.empty() || frames.back() != frame;
    if (changed) {
      frames.push_back(frame);
      Note("frame " + std::to_string(frame));
    }
    return changed;
  }
  void ShowDiagnosisStep(const QString& step) override {
    diagnosisSteps.push_back(step);
    Note("step " + step.toStdString());
  }
  void EnablePort(int slot, bool enabled) override {
    enabledPorts.emplace_back(slot, enabled);
    Note((enabled ? "enable port " : "disable port ") + std::to_string(slot));
  }
  void SetLamp(Lamp lamp, LampState state) override {
    lamps.emplace_back(lamp, state);
    if (onLamp) onLamp(lamp, state);
  }
  void ShowSlot(int slot) override {
    slots.push_back(slot);
    Note("slot " + std::to_string(slot));
  }

  std::vector<QString> statusTexts;
  std::vector<QString> diagnosisSteps;
  std::vector<int> progress;
  std::vector<int> frames;
  std::vector<std::pair<int, bool>> enabledPorts;
  std::vector<std::pair<Lamp, LampState>> lamps;
  std::vector<int> slots;
  std::function<void(Lamp, LampState)> onLamp;
  // Called with each of the calls but the lamps', as "status ...", "progress 20", "frame 3".
  std::function<void(const std::string&)> onCall;

 private:
  void Note(const std::string& call) {
    if (onCall) onCall(call);
  }
};

}  // namespace kartocheck::test
