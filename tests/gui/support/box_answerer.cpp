#include "gui/support/box_answerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>

namespace kartocheck::test {

namespace {

constexpr std::chrono::milliseconds LookInterval(2);

QString CaptionOf(const QAbstractButton* button) {
  return button == nullptr ? QString() : button->text().remove(u'&');
}

}  // namespace

SeenBox Look(const QMessageBox& box) {
  SeenBox seen{.title = box.windowTitle(),
               .text = box.text(),
               .format = box.textFormat(),
               .icon = box.icon()};
  QList<QAbstractButton*> buttons = box.buttons();
  std::sort(buttons.begin(), buttons.end(),
            [](const auto* left, const auto* right) { return left->x() < right->x(); });
  for (const QAbstractButton* button : buttons) {
    seen.buttons << CaptionOf(button);
    const auto* push = qobject_cast<const QPushButton*>(button);
    if (push != nullptr && push->isDefault()) seen.preselected = CaptionOf(push);
  }
  return seen;
}

BoxAnswerer::BoxAnswerer(std::deque<Step> steps) : steps_(std::move(steps)) {
  QObject::connect(&timer_, &QTimer::timeout, [this] { AnswerOpenBox(); });
  timer_.start(LookInterval);
}

BoxAnswerer::~BoxAnswerer() {
  EXPECT_TRUE(steps_.empty()) << steps_.size() << " expected message box(es) did not come";
}

void BoxAnswerer::AnswerOpenBox() {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (box == nullptr || box == answering_ || !box->isVisible()) return;
  answering_ = box;
  seen.push_back(Look(*box));
  if (steps_.empty()) {
    ADD_FAILURE() << "unexpected message box: " << box->text().toStdString();
    box->close();
  } else {
    const Step step = steps_.front();
    steps_.pop_front();
    step(*box);
  }
  answering_ = nullptr;
}

BoxAnswerer::Step PressButton(QMessageBox::StandardButton button) {
  return [button](QMessageBox& box) {
    QAbstractButton* pressed = box.button(button);
    ASSERT_NE(pressed, nullptr);
    QTest::mouseClick(pressed, Qt::LeftButton);
  };
}

BoxAnswerer::Step PressKey(Qt::Key key) {
  return [key](QMessageBox& box) { QTest::keyClick(&box, key); };
}

BoxAnswerer::Step CloseBox() {
  return [](QMessageBox& box) { box.close(); };
}

}  // namespace kartocheck::test
