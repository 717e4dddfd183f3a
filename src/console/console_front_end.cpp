#include "console/console_front_end.h"

#include <algorithm>
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

// Of a terminal that does not tell its own.
constexpr int UsualColumns = 80;

bool IsConfirming(Answer answer) {
  return answer == Answer::Yes || answer == Answer::Ok;
}

Answer Confirmation(Buttons buttons) {
  return buttons == Buttons::YesNo ? Answer::Yes : Answer::Ok;
}

Answer Refusal(Buttons buttons) {
  return buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
}

}  // namespace

ConsoleFrontEnd::ConsoleFrontEnd(std::ostream& messages, MessageOptions options,
                                 StoredRecords storedRecords)
    : out_(messages), options_(std::move(options)), storedRecords_(storedRecords) {}

ConsoleFrontEnd::ConsoleFrontEnd(std::ostream& messages, MessageOptions options, LineSource answers)
    : out_(messages), options_(std::move(options)), answers_(std::move(answers)) {}

std::vector<ReportedMessage> ConsoleFrontEnd::TakeMessages() {
  return std::exchange(messages_, {});
}

void ConsoleFrontEnd::CompleteAfterFatal() {
  // Completing may fail as well.
  if (const auto complete = std::exchange(complete_, nullptr)) complete();
}

void ConsoleFrontEnd::TellNotWritten() {
  EndStatusLine();
  out_ << Printable(QStringLiteral("KartoCheck: Der Bericht lässt sich nicht ausgeben."))
       << std::endl;
}

void ConsoleFrontEnd::Tell(Icon icon, const QString& title, const QString& text) {
  Write(title, text);
  messages_.push_back({.icon = icon, .title = title, .text = text});
}

Answer ConsoleFrontEnd::Ask(const Question& question) {
  Write(question.title, question.text);
  const Answer answer = answers_ ? AskPerson(question) : SafeAnswer(question);
  if (!answers_ && IsShown()) {
    out_ << "-> " << Printable(AnswerText(answer).toString()) << std::endl;
  }
  messages_.push_back({.icon = question.icon,
                       .title = question.title,
                       .text = question.text,
                       .isQuestion = true,
                       .answer = answer});
  return answer;
}

Answer ConsoleFrontEnd::SafeAnswer(const Question& question) const {
  const bool mayErase =
      question.consequence == Consequence::ErasesRecord && storedRecords_ == StoredRecords::Erase;
  return mayErase ? Answer::Yes : Refusal(question.buttons);
}

Answer ConsoleFrontEnd::AskPerson(const Question& question) {
  const char* const keys = IsConfirming(question.preselected) ? " [J/n] " : " [j/N] ";
  while (true) {
    out_ << Printable(AnswerText(Confirmation(question.buttons)) + u" / " +
                      AnswerText(Refusal(question.buttons)))
         << keys << std::flush;
    // Whoever has not seen the question has not answered it.
    const std::optional<std::string> line = out_ ? answers_() : std::nullopt;
    if (!line) {
      out_ << std::endl;
      return Refusal(question.buttons);
    }
    const QString reply = QString::fromStdString(*line).trimmed().toLower();
    if (reply.isEmpty()) return question.preselected;
    if (reply == u"j" || reply == u"ja") return Confirmation(question.buttons);
    if (reply == u"n" || reply == u"nein") return Refusal(question.buttons);
  }
}

void ConsoleFrontEnd::ShowStatusText(const QString& text) {
  if (text.isEmpty() || options_.statusLine == StatusLine::LeftOut) return;
  if (options_.statusLine == StatusLine::Kept) {
    out_ << Printable(text) << std::endl;
    return;
  }
  // Some terminals begin a new line as soon as one is full.
  const qsizetype longest = std::max(options_.columns().value_or(UsualColumns) - 1, 1);
  // Blanks cover what a longer text before has left.
  out_ << '\r' << Printable(text.leftJustified(statusWidth_).left(longest)) << std::flush;
  statusWidth_ = std::min(text.size(), longest);
}

void ConsoleFrontEnd::EndStatusLine() {
  if (std::exchange(statusWidth_, 0) > 0) out_ << std::endl;
}

void ConsoleFrontEnd::Write(const QString& title, const QString& text) {
  if (!IsShown()) return;
  EndStatusLine();
  const QString prefix = title.trimmed() + u": ";
  const QString continuation = u'\n' + QString(prefix.size(), u' ');
  const QString lines = QString(text).trimmed().replace(QStringLiteral("\r\n"), continuation);
  out_ << Printable(prefix + lines) << std::endl;
}

}  // namespace kartocheck
