#include "console/console_front_end.h"

#include <ostream>
#include <utility>

#include "console/text_report.h"

namespace kartocheck {

namespace {

QStringView AnswerText(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return u"OK";
    case Answer::Cancel:
      return u"Abbrechen";
    case Answer::Yes:
      return u"Ja";
    case Answer::No:
      return u"Nein";
  }
  return {};
}

}  // namespace

ConsoleFrontEnd::ConsoleFrontEnd(std::ostream& messages, StoredRecords storedRecords)
    : out_(messages), storedRecords_(storedRecords) {}

std::vector<ReportedMessage> ConsoleFrontEnd::TakeMessages() {
  return std::exchange(messages_, {});
}

void ConsoleFrontEnd::Tell(Icon icon, const QString& title, const QString& text) {
  messages_.push_back({.icon = icon, .title = title, .text = text});
  Write(messages_.back());
}

Answer ConsoleFrontEnd::Ask(const Question& question) {
  Answer answer = question.buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
  if (question.consequence == Consequence::ErasesRecord && storedRecords_ == StoredRecords::Erase) {
    answer = Answer::Yes;
  }
  messages_.push_back({.icon = question.icon,
                       .title = question.title,
                       .text = question.text,
                       .isQuestion = true,
                       .answer = answer});
  Write(messages_.back());
  return answer;
}

void ConsoleFrontEnd::ShowStatusText(const QString& text) {
  out_ << Printable(text) << '\n';
  out_.flush();
}

bool ConsoleFrontEnd::ShowFrameX(int frame) {
  return std::exchange(frame_, frame) != frame;
}

void ConsoleFrontEnd::Write(const ReportedMessage& message) {
  const QString prefix = message.title.trimmed() + u": ";
  QString continuation = u'\n' + QString(prefix.size(), u' ');
  const QString lines =
      QString(message.text).replace(QStringLiteral("\r\n"), continuation).trimmed();
  out_ << Printable(prefix + lines) << '\n';
  if (message.isQuestion) {
    out_ << Printable(QString(prefix.size(), u' ') + u"-> " + AnswerText(message.answer)) << '\n';
  }
  out_.flush();
}

}  // namespace kartocheck
