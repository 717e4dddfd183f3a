#include <QTest>

#include <deque>
#include <functional>

#include "gui/flow_logs/flows.h"
#include "gui/flow_logs/window_run.h"
#include "gui/support/screen.h"

namespace kartocheck::test {

namespace {

constexpr int PortOptions = 5;
constexpr int FurtherPortOption = 4;
constexpr int StatusTabs = 5;

const QString FullScan = QStringLiteral("CmdB_MKt_Test_0");
const QString Diagnosis = QStringLiteral("CmdB_MKt_Test_1");
const QString ShowStatus = QStringLiteral("CmdB_MKt_Test_2");
const QString ReadCard = QStringLiteral("CmdB_MKt_Test_3");
const QString CopyData = QStringLiteral("CmdB_MKt_Test_4");
const QString ResetFields = QStringLiteral("CmdB_MKt_Test_5");

QString Option(int member) {
  return QStringLiteral("Opti_Comx_%1").arg(member);
}

void WalkThroughTabs(WindowRun& run) {
  run.Click(ShowStatus);
  for (int tab = 0; tab < StatusTabs; ++tab) run.ClickTab(tab);
  // The one in front, once more.
  run.ClickTab(StatusTabs - 1);
}

void WorkOnPort(WindowRun& run, int member) {
  run.Click(Option(member));
  if (!run.CanBeUsed(Option(member))) return;
  run.Click(ReadCard);
  run.Click(ReadCard);
  run.Click(CopyData);
  run.LookAtEgk();
  run.Click(ShowStatus);
  run.Click(ResetFields);
  run.Click(CopyData);
  run.Click(ReadCard);
}

void WorkOnFurtherPorts(WindowRun& run) {
  for (int row = 0; row < run.ListEntryCount(); ++row) {
    run.ClickListEntry(row);
    run.Click(ReadCard);
    run.Click(CopyData);
    run.LookAtEgk();
  }
  // From the last one back to the first, over a COM port.
  run.Click(Option(0));
  if (run.ListEntryCount() > 0) run.ClickListEntry(0);
  run.LookAtEgk();
  run.Click(ResetFields);
  run.LookAtEgk();
}

void WorkOnAllPorts(WindowRun& run) {
  for (int member = 0; member < PortOptions; ++member) WorkOnPort(run, member);
  WorkOnFurtherPorts(run);
}

void Start(const QString& scenario, FlowLog& log) {
  WindowRun run(scenario, Manner::Refusing, log);
  run.LogWholeScreen();
  WalkThroughTabs(run);
  for (const QString& button : {CopyData, ResetFields}) run.Click(button);
  run.LookAtEgk();
  run.LookAtSideWindow(QStringLiteral("mnuBenutzerInformation"), QStringLiteral("Form_FirstUser"),
                       QStringLiteral("Command1_1"));
  run.LookAtSideWindow(QStringLiteral("mnuInfo"), QStringLiteral("Form_Info"),
                       QStringLiteral("CmdB_1Form_Info"));
  run.Trigger(QStringLiteral("mnuPruefbericht"));
  run.Trigger(QStringLiteral("mnuBeenden"));
  run.Finish();
}

// Scan, work on every port, scan again: what was read before is gone, and so are records that a
// mobile terminal has given away.
void Scan(Manner manner, const QString& scenario, FlowLog& log) {
  WindowRun run(scenario, manner, log);
  run.Click(FullScan);
  WalkThroughTabs(run);
  WorkOnAllPorts(run);
  run.Click(FullScan);
  WalkThroughTabs(run);
  run.Finish();
}

void ValidatedScan(const QString& scenario, FlowLog& log) {
  WindowRun run(scenario, Manner::Confirming, log);
  run.Trigger(QStringLiteral("mnuValidierung"));
  run.Click(FullScan);
  WorkOnAllPorts(run);
  run.Trigger(QStringLiteral("mnuValidierung"));
  run.Click(ReadCard);
  run.Finish();
}

// Nothing is known of the ports before.
void PortsWithoutScan(Manner manner, const QString& scenario, FlowLog& log) {
  WindowRun run(scenario, manner, log);
  WorkOnAllPorts(run);
  WalkThroughTabs(run);
  run.Finish();
}

// Esc while the scan looks for further ports.
void ScanEndedEarly(const QString& scenario, FlowLog& log) {
  constexpr int EndedAt = 100;
  WindowRun run(scenario, Manner::Confirming, log);
  run.Program().library.beforeInit = [&](int pn) {
    if (pn != EndedAt) return;
    log.Line(QStringLiteral("Esc"));
    Activate(run.Program().window);
    QTest::keyClick(&run.Program().window, Qt::Key_Escape);
  };
  run.Click(FullScan);
  run.Finish();
}

// The window is asked to close while the link is opened for the nth time; the scan ends first.
void ClosedDuringScan(int opening, const QString& scenario, FlowLog& log) {
  WindowRun run(scenario, Manner::Confirming, log);
  int openings = 0;
  run.Program().library.beforeInit = [&](int /*pn*/) {
    if (++openings != opening) return;
    log.Line(QStringLiteral("close request"));
    run.Program().window.close();
  };
  run.Click(FullScan);
  log.Line(run.Program().window.isVisible() ? QStringLiteral("still open")
                                            : QStringLiteral("closed"));
}

// The answers to the four questions of the diagnosis: No to one of them, or to none.
std::vector<std::deque<bool>> DiagnosisAnswers() {
  constexpr std::size_t Questions = 4;
  std::vector<std::deque<bool>> series;
  for (std::size_t refused = 0; refused < Questions; ++refused) {
    series.emplace_back(refused, true).push_back(false);
  }
  series.emplace_back(Questions, true);
  return series;
}

// Diagnoses the port of an option, or of a line in the list of further ports. Returns how many
// lines that list has.
int DiagnosePort(int member, int row, const std::deque<bool>& answers, const QString& scenario,
                 FlowLog& log) {
  log.Line(QStringLiteral("== diagnosis, %1 questions, the last answered %2")
               .arg(answers.size())
               .arg(answers.back() ? u"Yes" : u"No"));
  WindowRun run(scenario, Manner::Preselected, log);
  run.Click(Option(member));
  const int rows = run.ListEntryCount();
  if (row < rows) run.ClickListEntry(row);
  run.User().AnswerNext(answers);
  run.Click(Diagnosis);
  run.User().AnswerNext({});
  run.Finish();
  return rows;
}

void DiagnoseOption(int member, const QString& scenario, FlowLog& log) {
  for (const std::deque<bool>& answers : DiagnosisAnswers()) {
    (void)DiagnosePort(member, 0, answers, scenario, log);
  }
}

// Without a further port the diagnosis has nothing to ask, whatever the answers would be.
void DiagnoseFurtherPorts(const QString& scenario, FlowLog& log) {
  const std::vector<std::deque<bool>> series = DiagnosisAnswers();
  const int rows = DiagnosePort(FurtherPortOption, 0, series.front(), scenario, log);
  for (int row = 0; row < rows; ++row) {
    for (const std::deque<bool>& answers : series) {
      (void)DiagnosePort(FurtherPortOption, row, answers, scenario, log);
    }
  }
}

}  // namespace

std::vector<Flow> WindowFlows() {
  using std::placeholders::_1;
  using std::placeholders::_2;
  const auto with = [](auto function, auto argument) {
    return std::bind(function, argument, _1, _2);
  };
  std::vector<Flow> flows{
      {QStringLiteral("window-start"), Start},
      {QStringLiteral("window-scan-confirming"), with(Scan, Manner::Confirming)},
      {QStringLiteral("window-scan-refusing"), with(Scan, Manner::Refusing)},
      {QStringLiteral("window-scan-preselected"), with(Scan, Manner::Preselected)},
      {QStringLiteral("window-scan-validated"), ValidatedScan},
      {QStringLiteral("window-scan-ended-early"), ScanEndedEarly},
      {QStringLiteral("window-scan-closed-at-first-port"), with(ClosedDuringScan, 1)},
      {QStringLiteral("window-scan-closed-in-sweep"), with(ClosedDuringScan, 50)},
      {QStringLiteral("window-ports-confirming"), with(PortsWithoutScan, Manner::Confirming)},
      {QStringLiteral("window-ports-refusing"), with(PortsWithoutScan, Manner::Refusing)},
      {QStringLiteral("window-diagnosis-further"), DiagnoseFurtherPorts},
  };
  for (int member = 0; member < FurtherPortOption; ++member) {
    flows.push_back(
        {QStringLiteral("window-diagnosis-com%1").arg(member + 1), with(DiagnoseOption, member)});
  }
  return flows;
}

}  // namespace kartocheck::test
