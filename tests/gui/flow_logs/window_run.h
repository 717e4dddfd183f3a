#pragma once

#include <QString>

#include <functional>

#include "gui/flow_logs/flow_log.h"
#include "gui/flow_logs/logged_program.h"
#include "gui/flow_logs/logged_user.h"
#include "gui/flow_logs/screen_state.h"

namespace kartocheck::test {

// One use of the window, from its opening on, step by step. After each step it notes what has
// changed on the screen; so it does before each exchange with a terminal, and behind each box.
class WindowRun {
 public:
  WindowRun(const QString& scenarioFile, Manner manner, FlowLog& log);

  WindowRun(const WindowRun&) = delete;
  WindowRun& operator=(const WindowRun&) = delete;

  // Notes everything that is seen, not only what has changed.
  void LogWholeScreen();

  void Step(const QString& name, const std::function<void()>& action);

  // Steps. One whose control cannot be used is noted as such, and not done.
  void Click(const QString& control);
  void ClickTab(int tab);
  void ClickListEntry(int row);
  void Trigger(const QString& menuEntry);

  // Opens the eGK window, walks through its views and closes it.
  void LookAtEgk();
  // Opens a side window of the menu and closes it with this button.
  void LookAtSideWindow(const QString& menuEntry, const QString& window, const QString& button);

  // The test report, then the window is closed.
  void Finish();

  [[nodiscard]] bool CanBeUsed(const QString& control);
  [[nodiscard]] int ListEntryCount();

  [[nodiscard]] LoggedUser& User() { return user_; }
  [[nodiscard]] LoggedProgram& Program() { return program_; }

 private:
  void LogScreen();
  void WalkThroughEgk(QWidget& window);

  FlowLog& log_;
  LoggedProgram program_;
  LoggedUser user_;
  ScreenState seen_;
};

}  // namespace kartocheck::test
