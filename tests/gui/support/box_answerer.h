#pragma once

#include <QMessageBox>
#include <QTimer>

#include <deque>
#include <functional>
#include <vector>

namespace kartocheck::test {

// A message box as it stood on the screen.
struct SeenBox {
  QString title;
  QString text;
  Qt::TextFormat format = Qt::AutoText;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  QStringList buttons{};  // captions without mnemonics, in the order of the screen
  QString preselected{};
};

[[nodiscard]] SeenBox Look(const QMessageBox& box);

// The user in front of the message boxes: notes each and answers it with the next step. A box
// without a step left fails the test and is closed; so does a step that found no box.
class BoxAnswerer {
 public:
  using Step = std::function<void(QMessageBox&)>;

  explicit BoxAnswerer(std::deque<Step> steps);
  ~BoxAnswerer();

  BoxAnswerer(const BoxAnswerer&) = delete;
  BoxAnswerer& operator=(const BoxAnswerer&) = delete;

  std::vector<SeenBox> seen;

 private:
  void AnswerOpenBox();

  std::deque<Step> steps_;
  QMessageBox* answering_ = nullptr;
  QTimer timer_;
};

// Steps.
[[nodiscard]] BoxAnswerer::Step PressButton(QMessageBox::StandardButton button);
[[nodiscard]] BoxAnswerer::Step PressKey(Qt::Key key);
[[nodiscard]] BoxAnswerer::Step CloseBox();

}  // namespace kartocheck::test
