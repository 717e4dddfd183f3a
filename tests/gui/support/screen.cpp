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

QWidget* FrontWindow() {
  QWidget* front = QApplication::activeModalWidget();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const bool isOpen = window->isVisible() && window->windowType() == Qt::Window;
    if (front == nullptr && isOpen) front = window;
  }
  if (front != nullptr && QApplication::activeWindow() != front) {
    QApplication::setActiveWindow(front);
  }
  return front;
}

bool WaitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, PatienceMs);
}

}  // namespace kartocheck::test
