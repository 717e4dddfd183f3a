#pragma once

#include <QString>

namespace kartocheck {

enum class Icon { Information, Question, Exclamation, Critical };
enum class Buttons { OkCancel, YesNo };
enum class Answer { Ok, Cancel, Yes, No };

// What a Yes would do, for front ends that answer without a person.
enum class Consequence { None, ErasesRecord };

struct Question {
  QString title;
  QString text;
  Icon icon = Icon::Question;
  Buttons buttons = Buttons::YesNo;
  Answer preselected = Answer::Yes;
  Consequence consequence = Consequence::None;
};

// Modal message boxes. Texts are plain text with CR LF line breaks; data from a card may be in
// them.
class Dialogs {
 public:
  // A box with an OK button.
  virtual void Tell(Icon icon, const QString& title, const QString& text) = 0;

  // Title of ordinary messages, with a blank on each side.
  static constexpr QStringView Title = u" KartoCheck ";

  // One of the two answers of the question's buttons. A box that is closed without pressing a
  // button answers Cancel or No.
  [[nodiscard]] virtual Answer Ask(const Question& question) = 0;

  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;

 protected:
  Dialogs() = default;
  virtual ~Dialogs() = default;
};

}  // namespace kartocheck
