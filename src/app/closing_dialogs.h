#pragma once

#include "platform/dialogs.h"

namespace kartocheck {

// Passes boxes on to the front end until the program is asked to end: from then on nothing more is
// shown, and questions count as answered with No or Cancel.
class ClosingDialogs final : public Dialogs {
 public:
  ClosingDialogs(Dialogs& frontEnd, const bool& exitRequested)
      : frontEnd_(frontEnd), exitRequested_(exitRequested) {}

  void Tell(Icon icon, const QString& title, const QString& text) override {
    if (!exitRequested_) frontEnd_.Tell(icon, title, text);
  }

  [[nodiscard]] Answer Ask(const Question& question) override {
    if (!exitRequested_) return frontEnd_.Ask(question);
    return question.buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
  }

 private:
  Dialogs& frontEnd_;
  const bool& exitRequested_;
};

}  // namespace kartocheck
