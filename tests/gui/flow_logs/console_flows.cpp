#include "gui/flow_logs/flows.h"
#include "gui/flow_logs/logged_program.h"
#include "simulator/scenario.h"

namespace kartocheck::test {

namespace {

// The scenario's ports, and two that it does not have: a COM port and a USB device.
std::vector<int> PortsOf(const QString& scenario) {
  constexpr int LastComPort = 256;
  constexpr int LastUsbPort = 8447;
  ctapi::SimulatedPractice practice = ctapi::LoadScenario(scenario.toStdU16String());
  const std::vector<std::uint16_t> attached = practice.AttachedPorts();
  std::vector<int> ports(attached.begin(), attached.end());
  for (int pn : {4, LastComPort, LastUsbPort}) {
    if (practice.PortAt(static_cast<std::uint16_t>(pn)) == nullptr) ports.push_back(pn);
  }
  return ports;
}

const std::vector<std::deque<std::string>>& TypedSeries() {
  static const std::vector<std::deque<std::string>> series{
      {},
      {"n"},
      {"j", "n"},
      {"j", "j", "n"},
      {"j", "j", "j", "n"},
      {"j", "j", "j", "j"},
      {"", "", "", "", "", ""},
      {"vielleicht", " Ja ", "NEIN", "j", "j", "j"},
      {"j", "n", "n"},
      {"j", "n", "", ""},
  };
  return series;
}

Flow CallOf(const QString& name, const ConsoleCall& call) {
  return {name,
          [call](const QString& scenario, FlowLog& log) { RunConsoleCall(scenario, call, log); }};
}

void OnePortAfterTheOther(const QString& scenario, FlowLog& log) {
  for (const int pn : PortsOf(scenario)) {
    for (const bool json : {false, true}) {
      log.Line(QStringLiteral("== port %1%2").arg(pn).arg(json ? u" as JSON" : u""));
      RunConsoleCall(scenario, {.json = json, .eraseRecords = json, .port = Port(pn)}, log);
    }
  }
}

void Diagnoses(const QString& scenario, FlowLog& log) {
  for (const int pn : PortsOf(scenario)) {
    for (const std::deque<std::string>& typed : TypedSeries()) {
      QString line = QStringLiteral("== diagnosis of port %1, typed:").arg(pn);
      for (const std::string& answer : typed) line += u' ' + Quoted(QString::fromStdString(answer));
      log.Line(line);
      RunConsoleCall(scenario, {.diagnose = Port(pn), .typed = typed}, log);
    }
  }
}

}  // namespace

std::vector<Flow> ConsoleFlows() {
  return {
      CallOf(QStringLiteral("console-text"), {}),
      CallOf(QStringLiteral("console-json"), {.json = true}),
      CallOf(QStringLiteral("console-erase"), {.eraseRecords = true}),
      CallOf(QStringLiteral("console-erase-json"), {.json = true, .eraseRecords = true}),
      CallOf(QStringLiteral("console-validate"), {.eraseRecords = true, .validate = true}),
      CallOf(QStringLiteral("console-validate-json"),
             {.json = true, .eraseRecords = true, .validate = true}),
      {QStringLiteral("console-ports"), OnePortAfterTheOther},
      {QStringLiteral("console-diagnosis"), Diagnoses},
  };
}

}  // namespace kartocheck::test
