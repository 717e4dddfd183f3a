#pragma once

#include "platform/dialogs.h"

class QWidget;

namespace kartocheck {

// The program's message boxes, modal to its window.
class MessageBoxes final : public Dialogs {
 public:
  explicit MessageBoxes(QWidget& window) : window_(window) {}

  void Tell(Icon icon, const QString& title, const QString& text) override;
  [[nodiscard]] Answer Ask(const Question& question) override;

  // From now on nothing is shown any more, and questions count as answered with Cancel or No.
  void FallSilent() { silent_ = true; }

 private:
  QWidget& window_;
  bool silent_ = false;
};

}  // namespace kartocheck
