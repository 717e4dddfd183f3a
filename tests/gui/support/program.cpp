#include "gui/support/program.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <cstdlib>
#include <stdexcept>

namespace kartocheck::test {

namespace {

constexpr int PatienceMs = 5'000;

}  // namespace

Program::Program(const std::string& script, const Form_MKT_Test::Options& options)
    : dialogue(script.c_str()),
      library(dialogue),
      window(options),
      module({.api = library,
              .dialogs = window.Boxes(),
              .display = window,
              .eventLoop = eventLoop,
              .serial = serial,
              .directory = directory,
              .terminate = [] { std::abort(); }}),
      flow(module, window.Boxes(), window, window) {
  window.Attach(flow);
  window.show();
  QApplication::setActiveWindow(&window);
}

void Program::Click(const QString& name) {
  QTest::mouseClick(&Find(name), Qt::LeftButton);
}

void Program::Press(const QString& name, Qt::Key key) {
  QTest::keyClick(&Find(name), key);
}

QString Program::Text(const QString& name) {
  return Find<QLabel>(name).text();
}

void Program::ThrowNotFound(const QString& name) {
  throw std::invalid_argument("no control named " + name.toStdString());
}

bool WaitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, PatienceMs);
}

}  // namespace kartocheck::test
