#include "support/fake_dialogs.h"

#include <gtest/gtest.h>

namespace kartocheck::test {

void FakeDialogs::Tell(Icon icon, const QString& title, const QString& text) {
  boxes.push_back({.title = title, .text = text, .icon = icon});
}

Answer FakeDialogs::Ask(const Question& question) {
  boxes.push_back({.title = question.title,
                   .text = question.text,
                   .icon = question.icon,
                   .isQuestion = true,
                   .buttons = question.buttons,
                   .preselected = question.preselected,
                   .consequence = question.consequence});
  if (onAsk) onAsk(question);
  if (answers.empty()) {
    if (!answerSafely) ADD_FAILURE() << "unexpected question: " << question.text.toStdString();
    return question.buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
  }
  const Answer answer = answers.front();
  answers.pop_front();
  return answer;
}

std::vector<QString> FakeDialogs::Texts() const {
  std::vector<QString> texts;
  for (const ShownBox& box : boxes) texts.push_back(box.text);
  return texts;
}

}  // namespace kartocheck::test
