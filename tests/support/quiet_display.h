#pragma once

#include "platform/display.h"
#include "platform/event_loop.h"

namespace kartocheck::test {

// A display and an event loop that do nothing, where only the work behind them matters.
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

}  // namespace kartocheck::test
