#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace kartocheck::test {

// A window as its user works with it: controls by object name.
class Screen {
 public:
  explicit Screen(QWidget& root) : root_(root) {}

  // The control of this object name; fails the test where there is none.
  template <typename T = QWidget>
  [[nodiscard]] T& Find(const QString& name) {
    auto* found = root_.findChild<T*>(name);
    if (found == nullptr) ThrowNotFound(name);
    return *found;
  }

  // A click with the left mouse button on the middle of the control.
  void Click(const QString& name);
  void Press(const QString& name, Qt::Key key);

  // The text that the label of this name shows, as the user reads it.
  [[nodiscard]] QString Text(const QString& name);

 private:
  [[noreturn]] static void ThrowNotFound(const QString& name);

  QWidget& root_;
};

// The window that lies modally over the others and is no message box; fails the test where there is
// none, or one of another name.
[[nodiscard]] QWidget& SideWindow(const QString& name);

// Brings an open window to the front, with the keyboard's focus; fails the test where it stays
// behind.
void Activate(QWidget& window);

// The window that a window manager would have brought to the front, with the keyboard's focus: the
// modal one, or else the one that is open. Nothing where none is, or it is still on its way there.
[[nodiscard]] QWidget* FrontWindow();

// Runs the event loop until the condition holds; false when it does not within a few seconds.
[[nodiscard]] bool WaitUntil(const std::function<bool()>& condition);

}  // namespace kartocheck::test
