#pragma once

#include <QString>
#include <QWidget>

#include <map>

#include "gui/flow_logs/flow_log.h"

namespace kartocheck::test {

// A control or a menu entry as its user meets it.
struct ControlState {
  bool isVisible = true;
  bool isEnabled = true;
  QString contents{};
};

// What is seen of a window, by the object names of its controls and menu entries, in the order of
// these names; besides these "(clipboard)", "(focus)" and "(title)".
using ScreenState = std::map<QString, ControlState>;

[[nodiscard]] ScreenState StateOf(const QWidget& window);

// Notes what has changed between the two: a line a control whose contents are others, and the names
// of those that were shown, hidden, enabled and disabled. Nothing was there before a first state.
void LogChanges(const ScreenState& before, const ScreenState& after, FlowLog& log);

}  // namespace kartocheck::test
