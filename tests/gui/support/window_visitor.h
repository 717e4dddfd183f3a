#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace kartocheck::test {

// The user in front of a side window that an action waits for: looks at the window of this name
// when it comes, and closes it. A window that does not come fails the test.
class WindowVisitor {
 public:
  WindowVisitor(const QString& name, std::function<void(QWidget&)> look);
  ~WindowVisitor();

  WindowVisitor(const WindowVisitor&) = delete;
  WindowVisitor& operator=(const WindowVisitor&) = delete;

 private:
  void VisitOpenWindow();

  QString name_;
  std::function<void(QWidget&)> look_;
  bool hasCome_ = false;
  QTimer timer_;
};

}  // namespace kartocheck::test
