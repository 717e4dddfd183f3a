#pragma once

#include <QString>

#include <functional>
#include <vector>

#include "gui/flow_logs/flow_log.h"

namespace kartocheck::test {

// A flow over a scenario that is loaded anew for it.
struct Flow {
  QString name;
  std::function<void(const QString& scenarioFile, FlowLog& log)> run;
};

[[nodiscard]] std::vector<Flow> WindowFlows();
[[nodiscard]] std::vector<Flow> ConsoleFlows();

}  // namespace kartocheck::test
