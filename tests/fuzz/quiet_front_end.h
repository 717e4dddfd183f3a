#pragma once

#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/event_loop.h"

namespace kartocheck::fuzz {

// Counts messages and gives every question the same kind of answer.
class QuietDialogs final : public Dialogs {
 public:
  explicit QuietDialogs(bool agrees = false) : agrees_(agrees) {}

  void Tell(Icon /*icon*/, const QString& /*title*/, const QString& /*text*/) override {
    ++messages;
  }
  [[nodiscard]] Answer Ask(const Question& question) override {
    ++questions;
    if (question.buttons == Buttons::YesNo) return agrees_ ? Answer::Yes : Answer::No;
    return agrees_ ? Answer::Ok : Answer::Cancel;
  }

  int messages = 0;
  int questions = 0;

 private:
  bool agrees_;
};

class QuietDisplay final : public Display {
 public:
  void ShowStatusText(const QString& /*text*/) override {}
  void ShowProgress(int /*percent*/) override {}
  bool ShowFrameX(int /*frame*/) override { return false; }
  void ShowDiagnosisStep(const QString& /*step*/) override {}
  void EnablePort(int /*slot*/, bool /*enabled*/) override {}
  void SetLamp(Lamp /*lamp*/, LampState /*state*/) override {}
  void ShowSlot(int /*slot*/) override {}
};

class QuietEventLoop final : public EventLoop {
 public:
  void Yield() override {}
  void Wait(std::chrono::milliseconds /*duration*/) override {}
};

}  // namespace kartocheck::fuzz
