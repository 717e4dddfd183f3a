#include "gui/support/screen.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <stdexcept>

namespace kartocheck::test {

namespace {

constexpr int PatienceMs = 5'000;

}  // namespace

void Screen::Click(const QString& name) {
  QTest::mouseClick(&Find(name), Qt::LeftButton);
}

void Screen::Press(const QString& name, Qt::Key key) {
  QTest::keyClick(&Find(name), key);
}

QString Screen::Text(const QString& name) {
  return Find<QLabel>(name).text();
}

void Screen::ThrowNotFound(const QString& name) {
  throw std::invalid_argument("no control named " + name.toStdString());
}

QWidget& SideWindow(const QString& name) {
  QWidget* window = QApplication::activeModalWidget();
  if (window == nullptr || window->objectName() != name) {
    throw std::invalid_argument("no window named " + name.toStdString());
  }
  return *window;
}

void Activate(QWidget& window) {
  window.activateWindow();
  if (!WaitUntil([&] { return QApplication::activeWindow() == &window; })) {
    throw std::runtime_error("a window stays behind: " + window.objectName().toStdString());
  }
}

QWidget* FrontWindow() {
  QWidget* front = QApplication::activeModalWidget();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const bool isOpen = window->isVisible() && window->windowType() == Qt::Window;
    if (front == nullptr && isOpen) front = window;
  }
  if (front == nullptr || QApplication::activeWindow() == front) return front;
  front->activateWindow();
  return nullptr;
}

bool WaitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, PatienceMs);
}

}  // namespace kartocheck::test
