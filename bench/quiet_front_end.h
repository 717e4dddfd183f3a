#pragma once

#include <stdexcept>

#include "platform/dialogs.h"
#include "platform/display.h"
#include "platform/event_loop.h"

namespace kartocheck::bench {

// A front end that does nothing. A message box would mean that the benchmark measures a failure.
class QuietDialogs final : public Dialogs {
 public:
  void Tell(Icon /*icon*/, const QString& /*title*/, const QString& text) override {
    throw std::runtime_error(text.toStdString());
  }
  [[nodiscard]] Answer Ask(const Question& question) override {
    throw std::runtime_error(question.text.toStdString());
  }
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

}  // namespace kartocheck::bench
