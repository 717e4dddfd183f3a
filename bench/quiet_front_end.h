#pragma once

#include <stdexcept>

#include "platform/dialogs.h"
#include "support/quiet_display.h"

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

using test::QuietDisplay;
using test::QuietEventLoop;

}  // namespace kartocheck::bench
