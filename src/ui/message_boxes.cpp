#include "ui/message_boxes.h"

#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QScreen>

#include <algorithm>
#include <memory>

#include "ui/content_area.h"
#include "ui/screen_room.h"
#include "ui/text_label.h"

namespace kartocheck {

namespace {

// Qt makes no message box wider than the first, nor on a screen wider than the second than what
// leaves the third beside it. It would cut the text off.
constexpr int WidestBox = 1000;
constexpr int SmallScreen = 1024;
constexpr int BesideTheBox = 480;
// Wider than the buttons below a text, and higher than the picture beside it.
constexpr QSize LargeText(600, 200);

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

// The largest size that Qt and the screen leave to a box.
QSize RoomFor(const QMessageBox& box) {
  const int screen = box.screen()->availableSize().width();
  QSize room = RoomOnScreen(box);
  if (screen > SmallScreen) room.setWidth(std::min(screen - BesideTheBox, WidestBox));
  return room;
}

// Puts the text into an area of this size that scrolls.
void MakeScroll(QMessageBox& box, QLabel& label, const QSize& size) {
  auto place = std::make_unique<QWidget>();
  delete box.layout()->replaceWidget(&label, place.get());
  ContentArea* area = Scrolling(&label, &box);
  delete box.layout()->replaceWidget(place.get(), area);
  area->setFixedSize(size);
  area->ScrollByKeysOf(box);
}

// The lines are made for a box as wide as the longest of them; Qt would wrap earlier. A text that
// is higher than the screen scrolls, so that the buttons stay in view.
void GiveRoom(QMessageBox& box) {
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label == nullptr || box.screen() == nullptr) return;
  LeaveRoomForLetters(*label);
  const QSize line = label->sizeHint();
  label->setWordWrap(true);
  label->setMinimumSize(LargeText);
  // The picture, the buttons and the margins.
  const QSize around = box.layout()->totalMinimumSize() - LargeText;
  const QSize room = RoomFor(box) - around;
  const int width = std::min(line.width(), room.width());
  label->setMinimumSize(0, 0);
  const int height = std::max(label->heightForWidth(width), 0);
  label->setMinimumSize(width, height);
  if (height > room.height()) MakeScroll(box, *label, {width, room.height()});
}

void Fill(QMessageBox& box, Icon icon, const QString& title, const QString& text) {
  box.setTextFormat(Qt::PlainText);
  box.setIcon(IconOf(icon));
  box.setWindowTitle(title);
  box.setText(QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

}  // namespace

void MessageBoxes::Tell(Icon icon, const QString& title, const QString& text) {
  if (silent_) return;
  QMessageBox box(&window_);
  Fill(box, icon, title, text);
  box.setStandardButtons(QMessageBox::Ok);
  GiveRoom(box);
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
  GiveRoom(box);
  return box.exec() == ButtonOf(agreed) ? agreed : declined;
}

}  // namespace kartocheck
