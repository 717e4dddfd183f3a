#include "ui/main_window/test_flow.h"

#include <QFileInfo>

#include <algorithm>

#include "diagnosis/insert_card_prompt.h"
#include "discovery/port_names.h"
#include "discovery/port_sweep.h"
#include "text/lines.h"
#include "text/status_texts.h"

namespace kartocheck {

namespace {

constexpr int ComPortCount = 4;
constexpr int FurtherPortMember = 4;
// Title of the fifth tab while it stands for no port.
constexpr QStringView FurtherPorts = u"weitere ...";

// Progress in percent: a step a COM port, then the sweep, up to the end.
constexpr int ScanStep = 20;
constexpr int DiagnosisStep = 25;
constexpr int ReadCheckDone = 50;
constexpr int Done = 100;

QStringList PortLines(const std::vector<int>& ports) {
  QStringList lines;
  for (const int pn : ports) lines.append(PortLine(pn));
  return lines;
}

QString ChosenText(int pn) {
  constexpr QStringView Chosen = u" wurde ausgewählt";
  if (IsUsbPort(pn)) return u"Das USB device " + QString::number(UsbDeviceNumber(pn)) + Chosen;
  return (pn <= LastComPort ? QStringLiteral("Die serielle Schnittstelle COM ")
                            : QStringLiteral("Das ?device ")) +
         QString::number(pn) + Chosen;
}

}  // namespace

// From the click to the end of an action: busy, controls disabled.
class TestFlow::RunningAction {
 public:
  explicit RunningAction(TestFlow& flow) : flow_(flow) {
    flow_.module_.Busy = true;
    flow_.frontEnd_.SetActionRunning(true);
  }

  ~RunningAction() {
    flow_.frontEnd_.SetActionRunning(false);
    flow_.module_.Busy = false;
  }

  RunningAction(const RunningAction&) = delete;
  RunningAction& operator=(const RunningAction&) = delete;

 private:
  TestFlow& flow_;
};

TestFlow::TestFlow(Bas_MKT_Test& module, Dialogs& dialogs, Display& display, FrontEnd& frontEnd)
    : module_(module), dialogs_(dialogs), display_(display), frontEnd_(frontEnd) {}

template <typename Work>
void TestFlow::RunAction(Work work) {
  if (module_.Busy) return;
  {
    const RunningAction running(*this);
    work();
    if (module_.IsLinkOpen()) module_.CloseLink();
  }
  if (module_.ExitRequested) {
    module_.ExitRequested = false;
    frontEnd_.CloseNow();
  }
}

void TestFlow::Button(int index) {
  RunAction([&] {
    if (index < 0 || index > static_cast<int>(Action::ResetFields)) return;
    Run(static_cast<Action>(index));
    ShowProgress(0);
  });
}

void TestFlow::Run(Action action) {
  const bool needsPort = action == Action::Diagnosis || action == Action::ReadCard;
  if (needsPort && !HasSelectedPort()) return;
  if (action <= Action::ReadCard) ShowFrame(static_cast<Frame>(action));
  switch (action) {
    case Action::FullScan:
      return FullScan();
    case Action::Diagnosis:
      return Diagnose();
    case Action::ShowStatus:
      return ShowStatus();
    case Action::ReadCard:
      return ReadCard();
    case Action::CopyData:
      return CopyData();
    case Action::ResetFields:
      return ResetFields();
  }
}

void TestFlow::FullScan() {
  ShowProgress(0);
  ScanComPorts();
  ScanFurtherPorts();
  ShowProgress(Done);
  ShowStatusText(status_text::ScanResult);
  ShowScanResult();
  frontEnd_.MarkButton(static_cast<int>(Action::ShowStatus));
  ShowTerminalStatus();
  ShowFirstReadPort();
}

void TestFlow::ScanComPorts() {
  for (int pn = 1; pn <= ComPortCount && !module_.ExitRequested; ++pn) {
    ScanPort(pn);
  }
}

void TestFlow::ScanFurtherPorts() {
  if (module_.ExitRequested) return;
  SweepFurtherPorts();
  display_.EnablePort(FurtherPortSlot, !module_.FurtherPorts.empty());
  if (module_.FurtherPorts.empty() || module_.ExitRequested) return;
  ScanPort(module_.FurtherPorts.front());
}

void TestFlow::ScanPort(int pn) {
  if (pn <= ComPortCount) {
    ShowStatusText(status_text::ScanCom[static_cast<std::size_t>(pn - 1)]);
    ShowProgress(progress_ + ScanStep);
  } else {
    UseFurtherPort(pn);
    ShowStatusText(PortCheckText(pn));
  }
  module_.Terminals[SlotOf(pn)].Answered = false;
  CheckAndOffer(pn);
  if (module_.Terminals[SlotOf(pn)].Answered) {
    RunReadLoop(LoopSteps(pn), module_.Boxes(), display_);
  }
}

void TestFlow::CheckAndOffer(int pn) {
  module_.CheckPort(pn);
  const PortEntry& port = module_.Ports[SlotOf(pn)];
  display_.EnablePort(SlotOf(pn), port.PortPresent && !port.PortError);
  (void)ShowHint(pn);
  // The check has emptied the slot.
  if (SlotOf(pn) == module_.CurrentPort) ShowCurrentData();
}

void TestFlow::SweepFurtherPorts() {
  const int before = progress_;
  sweepEnded_ = false;
  module_.SweepPorts([&](int done) {
    ShowProgress(before + (Done - before) * done / SweepPortCount);
    return !sweepEnded_ && !module_.ExitRequested;
  });
  // A port that has not been found again leaves nothing behind.
  const bool isFound = module_.FurtherPort && LineOf(*module_.FurtherPort) >= 0;
  UseFurtherPort(isFound ? module_.FurtherPort : std::nullopt);
  frontEnd_.ShowHintsWithoutReader(module_.HintsWithoutReader());
}

void TestFlow::ShowScanResult() {
  if (module_.ExitRequested) return;
  frontEnd_.ShowScanResult(ScanResultOf(module_.Terminals, module_.Ports,
                                        static_cast<int>(module_.FurtherPorts.size())));
}

void TestFlow::ShowFirstReadPort() {
  for (int slot = 1; slot <= SlotCount; ++slot) {
    const TerminalInfo& info = module_.Terminals[slot];
    if (!info.Answered || !info.DataRead) continue;
    ShowFrame(Frame::Data);
    frontEnd_.MarkPort(slot - 1);
    SelectPort(slot - 1);
    ShowStatusText(status_text::Shown);
    return;
  }
}

void TestFlow::Diagnose() {
  const int pn = *module_.SelectedPort;
  ShowStatusText(status_text::DialogCheck);
  ShowProgress(0);
  frontEnd_.ShowDiagnosedPort(PortName(pn));
  module_.RunGuidedDiagnosis([this, pn] { DiagnosePort(pn); }, [this] { ShowTerminalStatus(); });
}

// The check that ends a diagnosis whose advice the user can follow at once.
void TestFlow::DiagnosePort(int pn) {
  if (module_.ExitRequested) return;
  const int slot = SlotOf(pn);
  ShowStatusText(status_text::ScanCom.at(static_cast<std::size_t>(slot - 1)));
  ShowProgress(progress_ + DiagnosisStep);
  ShowFrame(Frame::Wait);
  CheckAndOffer(pn);
  ShowFrame(Frame::DialogCheck);

  const TerminalInfo& info = module_.Terminals[slot];
  if (info.Answered) {
    ReadLoopSteps steps = LoopSteps(pn);
    steps.insertCardPrompt = [this, pn] { return InsertCardPromptOfDiagnosis(pn, IsMobile(pn)); };
    RunReadLoop(steps, module_.Boxes(), display_);
  }
  ShowStatusText(status_text::Shown);
  if (info.Answered && info.DataRead) {
    ShowFrame(Frame::Data);
    ShowCurrentData();
  } else {
    ShowTerminalStatus();
  }
}

void TestFlow::ShowStatus() {
  frontEnd_.ShowStatusTab(module_.CurrentPort);
  ShowTerminalStatus();
}

void TestFlow::ShowTerminalStatus() {
  ShowFrame(Frame::TerminalStatus);
  ShowStatusText(status_text::TerminalStatus);
}

void TestFlow::ReadCard() {
  const int pn = *module_.SelectedPort;
  ShowProgress(0);
  if (!module_.Terminals[SlotOf(pn)].DataRead) {
    ReadLoopSteps steps = LoopSteps(pn);
    steps.checkPort = [this, pn] {
      CheckAndOffer(pn);
      ShowProgress(ReadCheckDone);
    };
    RunReadLoop(steps, module_.Boxes(), display_);
  }
  ShowProgress(Done);
  ShowCurrentData();
  ShowStatusText(status_text::Shown);
}

void TestFlow::CopyData() {
  const int slot = module_.CurrentPort;
  ShowStatusText(status_text::Copied);
  frontEnd_.CopyToClipboard(ClipboardText(module_.Terminals[slot], module_.Insured[slot]));
}

void TestFlow::ResetFields() {
  ShowStatusText(status_text::FieldsReset);
  frontEnd_.ClearData();
  module_.ClearSlot(module_.CurrentPort);
}

void TestFlow::ChoosePort(int member) {
  if (module_.Busy || member < 0 || member > FurtherPortMember) return;
  if (member == FurtherPortMember && module_.FurtherPorts.empty()) {
    RunAction([this] {
      const Frame before = frame_;
      ShowFrame(Frame::Wait);
      ShowProgress(0);
      SweepFurtherPorts();
      ShowProgress(0);
      ShowFrame(before);
    });
  }
  if (!module_.Busy) SelectPort(member);
}

void TestFlow::SelectPort(int member) {
  constexpr std::array<QStringView, ComPortCount> Chosen{
      u"Die serielle Schnittstelle COM 1 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 2 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 3 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 4 wurde ausgewählt",
  };
  const int slot = member + 1;
  if (member == FurtherPortMember && !module_.FurtherPort && !module_.FurtherPorts.empty()) {
    UseFurtherPort(module_.FurtherPorts.front());
  }
  const TerminalInfo& info = module_.Terminals[slot];
  frontEnd_.ShowData(info.Answered ? DataFrameOf(info, module_.Insured[slot]) : EmptyDataFrame());
  module_.CurrentPort = slot;
  if (member < FurtherPortMember) {
    module_.SelectedPort = slot;
    return ShowStatusText(Chosen[static_cast<std::size_t>(member)]);
  }
  module_.SelectedPort = module_.FurtherPort;
  if (HasSelectedPort()) ShowStatusText(ChosenText(*module_.FurtherPort));
}

void TestFlow::ChooseFurtherPort(int index) {
  if (module_.Busy || index < 0 || index >= static_cast<int>(module_.FurtherPorts.size())) return;
  UseFurtherPort(module_.FurtherPorts[static_cast<std::size_t>(index)]);
  frontEnd_.MarkPort(FurtherPortMember);
  SelectPort(FurtherPortMember);
}

void TestFlow::UseFurtherPort(std::optional<int> pn) {
  module_.UseFurtherPort(pn);
  frontEnd_.ShowPortList(PortLines(module_.FurtherPorts), pn ? LineOf(*pn) : -1);
  frontEnd_.NameFurtherPort(pn ? PortLine(*pn) : FurtherPorts.toString());
  display_.ShowSlot(FurtherPortSlot);
  if (pn) {
    (void)ShowHint(*pn);
  } else {
    frontEnd_.ShowPortHint(FurtherPortSlot, {});
  }
  if (module_.CurrentPort == FurtherPortSlot) ShowCurrentData();
}

QString TestFlow::ShowHint(int pn) {
  const QString hint = module_.HintFor(pn);
  frontEnd_.ShowPortHint(SlotOf(pn), hint);
  return hint;
}

// The line of a port in the list of further ports, or -1.
int TestFlow::LineOf(int pn) const {
  const auto& ports = module_.FurtherPorts;
  const auto found = std::find(ports.begin(), ports.end(), pn);
  return found == ports.end() ? -1 : static_cast<int>(found - ports.begin());
}

void TestFlow::ChooseStatusTab() {
  if (!module_.Busy) ShowStatusText(status_text::TerminalStatus);
}

bool TestFlow::MayClose(CloseSource source) {
  if (module_.Busy) {
    module_.ExitRequested = true;
    return false;
  }
  if (source == CloseSource::User) {
    const Answer answer =
        dialogs_.Ask({.title = QStringLiteral("Beendet KartoCheck "),
                      .text = QStringLiteral(" Möchten Sie das Programm beenden? ")});
    if (answer != Answer::Yes) return false;
  }
  if (module_.IsLinkOpen()) module_.CloseLink();
  return true;
}

StatusTab TestFlow::StatusTabOf(int slot) const {
  const PortEntry& port = module_.Ports[slot];
  const TerminalInfo& info = module_.Terminals[slot];
  return {port.PortText.Trimmed(),    port.AvailText.Trimmed(),
          info.ModelName.Trimmed(),   info.ManufacturerId.Trimmed(),
          info.ProductCode.Trimmed(), info.SoftwareVersion.Trimmed(),
          info.DisplayText.Trimmed(), module_.IdentificationOf(slot)};
}

EgkInfo TestFlow::CurrentEgkInfo() const {
  const int slot = module_.CurrentPort;
  return EgkInfoOf(module_.Terminals[slot], module_.Egk[slot]);
}

void TestFlow::SetValidation(bool on) {
  if (!module_.Busy) module_.Validation.isOn = on;
}

void TestFlow::LoadSchema(VsdKind kind, const QString& file) {
  if (module_.Busy) return;
  const QString name = QFileInfo(file).fileName();
  const QString text = ReadSchemaText(file);
  if (text.isEmpty()) {
    return dialogs_.Tell(Icon::Exclamation, Dialogs::Title.toString(),
                         Lines({u"Das Schema konnte nicht geladen werden:", name, u"",
                                u"Die Datei ist nicht lesbar oder enthält kein XML.",
                                u"Das bisherige Schema wird weiter verwendet."}));
  }
  module_.Validation.schemas[kind].SetText(text);
  display_.ShowStatusText(u"Das Schema " + name + u" wurde geladen");
}

void TestFlow::ShowProgress(int percent) {
  progress_ = std::clamp(percent, 0, Done);
  display_.ShowProgress(progress_);
}

void TestFlow::ShowStatusText(QStringView text) {
  display_.ShowStatusText(text.toString());
}

void TestFlow::ShowFrame(Frame frame) {
  frame_ = frame;
  display_.ShowFrameX(static_cast<int>(frame));
}

void TestFlow::ShowCurrentData() {
  const int slot = module_.CurrentPort;
  frontEnd_.ShowData(DataFrameOf(module_.Terminals[slot], module_.Insured[slot]));
}

// The entry for further ports may be chosen while there is none.
bool TestFlow::HasSelectedPort() {
  if (!module_.SelectedPort) ShowStatusText(status_text::NoReader);
  return module_.SelectedPort.has_value();
}

bool TestFlow::IsMobile(int pn) const {
  return module_.Terminals[SlotOf(pn)].IsMobile();
}

ReadLoopSteps TestFlow::LoopSteps(int pn) {
  return {
      .checkPort = {},
      .checkStatus =
          [this, pn] {
            const Readiness readiness = module_.StatusCheck(pn);
            display_.ShowSlot(SlotOf(pn));
            return readiness;
          },
      .hint = [this, pn] { return ShowHint(pn); },
      .insertCardPrompt = [this, pn] { return InsertCardPrompt(pn, IsMobile(pn)); },
      .read = [this, pn] { return module_.ReadCardData(pn); },
      .showSlot =
          [this, pn] {
            display_.ShowSlot(SlotOf(pn));
            (void)ShowHint(pn);
          },
  };
}

}  // namespace kartocheck
