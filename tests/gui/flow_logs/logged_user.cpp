#include "gui/flow_logs/logged_user.h"

#include <QApplication>
#include <QEvent>
#include <QPushButton>
#include <QTimer>

#include "gui/flow_logs/screen_state.h"
#include "gui/support/box_answerer.h"

namespace kartocheck::test {

namespace {

constexpr int MostTries = 3;

QString IconText(QMessageBox::Icon icon) {
  switch (icon) {
    case QMessageBox::NoIcon:
      return QStringLiteral("no icon");
    case QMessageBox::Information:
      return QStringLiteral("information");
    case QMessageBox::Warning:
      return QStringLiteral("warning");
    case QMessageBox::Critical:
      return QStringLiteral("critical");
    case QMessageBox::Question:
      return QStringLiteral("question");
  }
  return {};
}

QAbstractButton* FirstOf(const QMessageBox& box,
                         std::initializer_list<QMessageBox::StandardButton> wanted) {
  for (const auto button : wanted) {
    if (box.button(button) != nullptr) return box.button(button);
  }
  qFatal("a box without a button to press");
}

}  // namespace

LoggedUser::LoggedUser(Manner manner, std::function<void()> look, FlowLog& log)
    : manner_(manner), look_(std::move(look)), log_(log) {
  qApp->installEventFilter(this);
}

// What is shown is answered when its own event loop runs.
bool LoggedUser::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) {
    if (auto* box = qobject_cast<QMessageBox*>(watched)) {
      QTimer::singleShot(0, box, [this, box] { Answer(*box); });
    } else if (watched->objectName() == u"Form_DatenInfo") {
      auto* window = static_cast<QWidget*>(watched);
      QTimer::singleShot(0, window, [this, window] { ReadResult(*window); });
    }
  }
  return QObject::eventFilter(watched, event);
}

void LoggedUser::Answer(QMessageBox& box) {
  const SeenBox seen = Look(box);
  log_.Line(u"box " + IconText(seen.icon) + u' ' + Quoted(seen.title) + u' ' + Quoted(seen.text) +
            (seen.format == Qt::PlainText ? u" plain [" : u" rich [") + seen.buttons.join(u'|') +
            u"] preselected " + seen.preselected);
  look_();
  QAbstractButton* button = ButtonFor(box);
  log_.Line(u"pressed " + button->text().remove(u'&'));
  button->click();
}

QAbstractButton* LoggedUser::ButtonFor(const QMessageBox& box) {
  switch (MannerFor(box)) {
    case Manner::Confirming:
      return FirstOf(box, {QMessageBox::Yes, QMessageBox::Ok});
    case Manner::Refusing:
      return FirstOf(box, {QMessageBox::No, QMessageBox::Cancel, QMessageBox::Ok});
    case Manner::Preselected:
      break;
  }
  for (QAbstractButton* button : box.buttons()) {
    const auto* push = qobject_cast<const QPushButton*>(button);
    if (push != nullptr && push->isDefault()) return button;
  }
  return FirstOf(box, {QMessageBox::Ok});
}

Manner LoggedUser::MannerFor(const QMessageBox& box) {
  if (box.buttons().size() == 1) return Manner::Confirming;
  if (++asked_[box.text()] > MostTries) return Manner::Refusing;
  if (answers_.empty()) return manner_;
  const bool confirms = answers_.front();
  answers_.pop_front();
  return confirms ? Manner::Confirming : Manner::Refusing;
}

void LoggedUser::ReadResult(QWidget& window) {
  log_.Line(QStringLiteral("result window"));
  LogChanges({}, StateOf(window), log_);
  log_.Line(QStringLiteral("behind the result window"));
  look_();
  window.close();
  log_.Line(QStringLiteral("result window closed"));
}

}  // namespace kartocheck::test
