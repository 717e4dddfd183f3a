#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/dialogs.h"

namespace kartocheck::test {

// A message box as it was shown.
struct ShownBox {
  QString title;
  QString text;
  Icon icon = Icon::Information;
  bool isQuestion = false;
  Buttons buttons = Buttons::YesNo;
  Answer preselected = Answer::Yes;
  Consequence consequence = Consequence::None;
};

// Records every box. Questions get the answers in order; one without an answer left fails the test
// and gets No or Cancel.
class FakeDialogs final : public Dialogs {
 public:
  void Tell(Icon icon, const QString& title, const QString& text) override;
  [[nodiscard]] Answer Ask(const Question& question) override;

  // Answers every question that has none in `answers`; without it such a question fails the test.
  bool answerSafely = false;
  std::deque<Answer> answers;
  std::vector<ShownBox> boxes;
  std::function<void(const Question&)> onAsk;

  [[nodiscard]] std::vector<QString> Texts() const;
};

}  // namespace kartocheck::test
