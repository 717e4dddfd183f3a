#include "ui/message_boxes.h"

#include <QLabel>
#include <QMessageBox>
#include <QScreen>

#include <algorithm>

#include "ui/text_label.h"

namespace kartocheck {

namespace {

// Part of the screen's width that a text may take before its lines are wrapped.
constexpr double WidestPart = 0.6;
// And no more than this in logical pixels: Qt makes no message box wider than 1000 with its picture
// and margins, and would cut the text off.
constexpr int WidestText = 880;

QMessageBox::Icon IconOf(Icon icon) {
  switch (icon) {
    case Icon::Information:
      return QMessageBox::Information;
    case Icon::Question:
      return QMessageBox::Question;
    case Icon::Exclamation:
      return QMessageBox::Warning;
    case Icon::Critical:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButton ButtonOf(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return QMessageBox::Ok;
    case Answer::Cancel:
      return QMessageBox::Cancel;
    case Answer::Yes:
      return QMessageBox::Yes;
    case Answer::No:
      return QMessageBox::No;
  }
  return QMessageBox::NoButton;
}

// The lines are made for a box as wide as the longest of them; Qt would wrap earlier.
void KeepLinesWhole(QMessageBox& box) {
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  const QScreen* screen = box.screen();
  if (label == nullptr || screen == nullptr) return;
  const int widest =
      std::min(static_cast<int>(screen->availableSize().width() * WidestPart), WidestText);
  LeaveRoomForLetters(*label);
  label->setMinimumWidth(std::min(label->sizeHint().width(), widest));
}

void Fill(QMessageBox& box, Icon icon, const QString& title, const QString& text) {
  box.setTextFormat(Qt::PlainText);
  box.setIcon(IconOf(icon));
  box.setWindowTitle(title);
  box.setText(QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
  KeepLinesWhole(box);
}

}  // namespace

void MessageBoxes::Tell(Icon icon, const QString& title, const QString& text) {
  if (silent_) return;
  QMessageBox box(&window_);
  Fill(box, icon, title, text);
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

Answer MessageBoxes::Ask(const Question& question) {
  const bool yesNo = question.buttons == Buttons::YesNo;
  const Answer agreed = yesNo ? Answer::Yes : Answer::Ok;
  const Answer declined = yesNo ? Answer::No : Answer::Cancel;
  if (silent_) return declined;

  QMessageBox box(&window_);
  Fill(box, question.icon, question.title, question.text);
  box.setStandardButtons(ButtonOf(agreed) | ButtonOf(declined));
  box.setDefaultButton(ButtonOf(question.preselected));
  return box.exec() == ButtonOf(agreed) ? agreed : declined;
}

}  // namespace kartocheck
