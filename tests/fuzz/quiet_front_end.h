#pragma once

#include "platform/dialogs.h"
#include "support/quiet_display.h"

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

using test::QuietDisplay;
using test::QuietEventLoop;

}  // namespace kartocheck::fuzz
