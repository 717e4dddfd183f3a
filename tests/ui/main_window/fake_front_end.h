#pragma once

#include <functional>
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
  void SetActionRunning(bool running) override { Note(running ? "action starts" : "action ends"); }
  void CopyToClipboard(const QString& text) override {
    clipboard.push_back(text);
    Note("copy");
  }
  void CloseNow() override { Note("close window"); }

  std::vector<std::string> calls;
  std::vector<DataFrame> frames;
  std::vector<QString> clipboard;
  std::function<void(const std::string&)> onCall;

 private:
  void Note(const char* call) {
    calls.emplace_back(call);
    if (onCall) onCall(call);
  }
};

}  // namespace kartocheck::test
