// Records what the program does on a scenario, one log a flow, to be compared with what it did
// before: kartocheck_flow_logs FOLDER SCENARIO_FILE [FLOW].

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QStyle>

#include <cstdio>
#include <exception>

#include "gui/flow_logs/flows.h"
#include "ui/german_texts.h"

namespace kartocheck::test {
namespace {

// Qt has its own order of what is in a hash, anew for each process; a log must not show it.
void MakeRepeatable() {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QHashSeed::setDeterministicGlobalSeed();
}

int Run(const QStringList& arguments) {
  if (arguments.size() < 3) {
    std::fputs("usage: kartocheck_flow_logs FOLDER SCENARIO_FILE [FLOW]\n", stderr);
    return 2;
  }
  const QDir folder(arguments.at(1));
  if (!folder.mkpath(QStringLiteral("."))) qFatal("cannot make the folder");
  const QString& scenario = arguments.at(2);
  const QString onlyFlow = arguments.value(3);
  std::vector<Flow> flows = WindowFlows();
  for (const Flow& flow : ConsoleFlows()) flows.push_back(flow);
  for (const Flow& flow : flows) {
    if (!onlyFlow.isEmpty() && flow.name != onlyFlow) continue;
    const QString name = QFileInfo(scenario).completeBaseName() + u'.' + flow.name;
    FlowLog log(folder.filePath(name + u".txt"));
    flow.run(scenario, log);
  }
  return 0;
}

}  // namespace
}  // namespace kartocheck::test

int main(int argc, char** argv) {
  kartocheck::test::MakeRepeatable();
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("fusion"));
  // A flow goes on after its last window, and the next flow comes.
  QApplication::setQuitOnLastWindowClosed(false);
  kartocheck::InstallGermanTexts(application);
  try {
    return kartocheck::test::Run(QApplication::arguments());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
