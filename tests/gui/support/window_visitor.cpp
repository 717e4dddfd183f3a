#include "gui/support/window_visitor.h"

#include <QApplication>

#include <chrono>
#include <gtest/gtest.h>

namespace kartocheck::test {

namespace {

constexpr std::chrono::milliseconds LookInterval(2);

}  // namespace

WindowVisitor::WindowVisitor(const QString& name, std::function<void(QWidget&)> look)
    : name_(name), look_(std::move(look)) {
  QObject::connect(&timer_, &QTimer::timeout, [this] { VisitOpenWindow(); });
  timer_.start(LookInterval);
}

WindowVisitor::~WindowVisitor() {
  EXPECT_TRUE(hasCome_) << "the window " << name_.toStdString() << " did not come";
}

void WindowVisitor::VisitOpenWindow() {
  QWidget* window = QApplication::activeModalWidget();
  if (hasCome_ || window == nullptr || window->objectName() != name_) return;
  hasCome_ = true;
  look_(*window);
  window->close();
}

}  // namespace kartocheck::test
