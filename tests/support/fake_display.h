#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/display.h"
#include "platform/lamps.h"

namespace kartocheck::test {

// Records the status texts and what the lamps showed, in order.
class FakeDisplay final : public Display {
 public:
  FakeDisplay() {
    for (const Lamp lamp : {Lamp::Card, Lamp::Terminal}) {
      panel[lamp].Watch([this, lamp](LampState state) { NoteLamp(lamp, state); });
    }
    lamps.clear();
  }

  void ShowStatusText(const QString& text) override {
    statusTexts.push_back(text);
    if (onCall) onCall("status " + text.toStdString());
  }

  Lamps panel;
  std::vector<QString> statusTexts;
  std::vector<std::pair<Lamp, LampState>> lamps;
  std::function<void(Lamp, LampState)> onLamp;
  // Called with each status text, as "status ...".
  std::function<void(const std::string&)> onCall;

 private:
  void NoteLamp(Lamp lamp, LampState state) {
    lamps.emplace_back(lamp, state);
    if (onLamp) onLamp(lamp, state);
  }
};

}  // namespace kartocheck::test
