#include "gui/flow_logs/window_run.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QListWidget>
#include <QProgressBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <array>

namespace kartocheck::test {

namespace {

// Layouts inside of scroll areas settle in several rounds; a closed side window is deleted.
void Settle() {
  constexpr int Rounds = 3;
  for (int round = 0; round < Rounds; ++round) QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

constexpr std::array<QStringView, 6> EgkButtons{
    u"CmdB_VsdKind_0", u"CmdB_VsdKind_1", u"CmdB_VsdKind_2", u"Command2", u"Command4", u"Command1"};

}  // namespace

WindowRun::WindowRun(const QString& scenarioFile, Manner manner, FlowLog& log)
    : log_(log), program_(scenarioFile, log), user_(manner, [this] { LogScreen(); }, log) {
  QApplication::clipboard()->clear();
  program_.library.beforeExchange = [this](int /*exchange*/) { LogScreen(); };
  QObject::connect(&program_.Find<QProgressBar>(QStringLiteral("ProgressBar1")),
                   &QProgressBar::valueChanged, &user_,
                   [this](int value) { log_.Line(QStringLiteral("progress %1").arg(value)); });
  // Nobody looks at the pixels.
  program_.window.setUpdatesEnabled(false);
  Settle();
  seen_ = StateOf(program_.window);
}

void WindowRun::LogWholeScreen() {
  seen_.clear();
  LogScreen();
}

void WindowRun::LogScreen() {
  const ScreenState state = StateOf(program_.window);
  LogChanges(seen_, state, log_);
  seen_ = state;
}

void WindowRun::Step(const QString& name, const std::function<void()>& action) {
  log_.Line(u"# " + name);
  user_.BeginStep();
  action();
  Settle();
  LogScreen();
}

void WindowRun::Click(const QString& control) {
  Step(u"click " + control, [&] {
    if (CanBeUsed(control)) {
      program_.Click(control);
    } else {
      log_.Line(QStringLiteral("cannot be used"));
    }
  });
}

void WindowRun::ClickTab(int tab) {
  Step(QStringLiteral("click tab %1").arg(tab), [&] {
    QTabBar* bar = program_.Find<QTabWidget>(QStringLiteral("TabStrip1")).tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
  });
}

void WindowRun::ClickListEntry(int row) {
  Step(QStringLiteral("click list entry %1").arg(row), [&] {
    auto& list = program_.Find<QListWidget>(QStringLiteral("List1"));
    list.scrollToItem(list.item(row));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(list.item(row)).center());
  });
}

void WindowRun::Trigger(const QString& menuEntry) {
  Step(u"menu " + menuEntry, [&] {
    program_.Find<QAction>(menuEntry).trigger();
    QCoreApplication::sendPostedEvents(&program_.window, QEvent::MetaCall);
  });
}

void WindowRun::LookAtEgk() {
  Step(QStringLiteral("eGK window"), [&] {
    program_.Click(QStringLiteral("cmdeGK"));
    WalkThroughEgk(SideWindow(QStringLiteral("Form_egK_Info")));
  });
}

void WindowRun::WalkThroughEgk(QWidget& window) {
  ScreenState seen;
  const auto look = [&] {
    Settle();
    const ScreenState state = StateOf(window);
    LogChanges(seen, state, log_);
    seen = state;
  };
  look();
  Screen screen(window);
  for (const QStringView button : EgkButtons) {
    log_.Line(u"click " + button);
    screen.Click(button.toString());
    look();
  }
  log_.Line(QStringLiteral("help"));
  screen.Click(QStringLiteral("Command6"));
  log_.Line(QStringLiteral("close"));
  screen.Click(QStringLiteral("Command3"));
}

void WindowRun::LookAtSideWindow(const QString& menuEntry, const QString& window,
                                 const QString& button) {
  Step(u"menu " + menuEntry, [&] {
    program_.Find<QAction>(menuEntry).trigger();
    Settle();
    QWidget& side = SideWindow(window);
    LogChanges({}, StateOf(side), log_);
    log_.Line(u"click " + button);
    Screen(side).Click(button);
  });
}

void WindowRun::Finish() {
  log_.Line(QStringLiteral("# report"));
  log_.Lines(u"report", program_.Report());
  log_.Line(QStringLiteral("# close"));
  // Behind the question nothing of the run so far is asked again.
  user_.BeginStep();
  const bool isClosed = program_.window.close();
  log_.Line(isClosed ? QStringLiteral("closed") : QStringLiteral("still open"));
}

bool WindowRun::CanBeUsed(const QString& control) {
  const QWidget& widget = program_.Find(control);
  return widget.isEnabled() && widget.isVisible();
}

int WindowRun::ListEntryCount() {
  return program_.Find<QListWidget>(QStringLiteral("List1")).count();
}

}  // namespace kartocheck::test
