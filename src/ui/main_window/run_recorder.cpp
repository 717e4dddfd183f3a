#include "ui/main_window/run_recorder.h"

#include <algorithm>

namespace kartocheck {

namespace {

QString AnswerText(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return QStringLiteral("OK");
    case Answer::Cancel:
      return QStringLiteral("Abbrechen");
    case Answer::Yes:
      return QStringLiteral("Ja");
    case Answer::No:
      return QStringLiteral("Nein");
  }
  return {};
}

QString TextOf(QStringView kind, const QString& title, const QString& text) {
  return kind + u" (" + title.trimmed() + u"):\r\n" + text.trimmed();
}

QString WithoutDigits(QString text) {
  return text.removeIf([](QChar character) { return character.isDigit(); });
}

}  // namespace

RunRecorder::RunRecorder(Dialogs& dialogs, Display& display, Clock clock)
    : dialogs_(dialogs), display_(display), clock_(std::move(clock)) {}

void RunRecorder::Tell(Icon icon, const QString& title, const QString& text) {
  Keep(TextOf(u"Meldung", title, text));
  dialogs_.Tell(icon, title, text);
}

Answer RunRecorder::Ask(const Question& question) {
  Keep(TextOf(u"Frage", question.title, question.text));
  const Answer answer = dialogs_.Ask(question);
  Keep(u"Antwort: " + AnswerText(answer));
  return answer;
}

void RunRecorder::ShowStatusText(const QString& text) {
  if (IsInLongRow(text)) entries_.pop_back();
  Keep(text);
  display_.ShowStatusText(text);
}

bool RunRecorder::IsInLongRow(const QString& text) const {
  if (entries_.size() < LongestRow) return false;
  const QString kind = WithoutDigits(text);
  return std::all_of(entries_.end() - LongestRow, entries_.end(),
                     [&](const RunEntry& entry) { return WithoutDigits(entry.text) == kind; });
}

void RunRecorder::Keep(const QString& text) {
  if (entries_.size() == MostEntries) entries_.pop_front();
  entries_.push_back({clock_(), text});
}

}  // namespace kartocheck
