#include "ui/main_window/port_flow.h"

#include <algorithm>
#include <array>

#include "diagnosis/guided_diagnosis.h"
#include "diagnosis/insert_card_prompt.h"
#include "discovery/port_sweep.h"
#include "text/status_texts.h"

namespace kartocheck {

namespace {

// Title of the fifth tab while it stands for no port.
constexpr QStringView FurtherPorts = u"weitere ...";
// Progress in percent: a step a COM port, then the sweep, up to the end.
constexpr int ScanStep = 20;
constexpr int DiagnosisStep = 25;
constexpr int ReadCheckDone = 50;
constexpr int Done = 100;

// What choosing the entry for further ports does while none is known.
QString SearchHint() {
  return QStringLiteral(
      "Ein Klick auf \"weitere ...\" (oder die Leertaste) sucht nach weiteren Schnittstellen.");
}

QString ChosenText(Port port) {
  constexpr std::array<QStringView, ctapi::TestedComPorts.Count()> Tested{
      u"Die serielle Schnittstelle COM 1 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 2 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 3 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 4 wurde ausgewählt",
  };
  if (port.IsTested()) return Tested.at(static_cast<std::size_t>(port.Slot() - 1)).toString();
  const QString chosen = QString::number(port.ShownNumber()) + u" wurde ausgewählt";
  switch (port.Kind()) {
    case PortKind::Com:
      return u"Die serielle Schnittstelle COM " + chosen;
    case PortKind::Usb:
      return u"Das USB device " + chosen;
    case PortKind::Other:
      break;
  }
  return u"Das ?device " + chosen;
}

}  // namespace

void PortFlow::Scan(Port port) {
  if (port.IsTested()) {
    ShowStatusText(status_text::ScanCom.at(static_cast<std::size_t>(port.Slot() - 1)));
    ShowProgress(view_.progress.Value() + ScanStep);
  } else {
    UseFurtherPort(port);
    ShowStatusText(PortCheckText(port));
  }
  Check(port, Remember::Nothing);
  if (module_.TerminalOf(port.Slot()).Answered) {
    RunReadLoop(LoopSteps(port), module_.Boxes(), display_);
  }
}

void PortFlow::Check(Port port, Remember remember) {
  const int slot = port.Slot();
  CheckNow(port, remember);
  ShowSlot(slot);
  const PortEntry& entry = module_.PortOf(slot);
  // The entry for further ports stays: choosing it looks for them.
  view_.isPortEnabled[slot].Set(!port.IsTested() || !entry.IsChecked ||
                                (entry.PortPresent && !entry.PortError));
  (void)ShowHint(port);
  // The check has emptied the slot.
  if (slot == module_.CurrentSlot()) ShowCurrentData();
}

// A port whose check was broken off counts as not checked.
void PortFlow::CheckNow(Port port, Remember remember) {
  const bool isSearching = view_.isSearching.Value();
  isLooking_ = true;
  module_.CheckPort(port, remember, [&] { return !(isSearching && isSearchEnded_); });
  isLooking_ = false;
  if (isSearching && isSearchEnded_) module_.EmptySlot(port.Slot());
}

void PortFlow::SweepFurtherPorts() {
  const int before = view_.progress.Value();
  isLooking_ = true;
  module_.SweepPorts([&](int done) {
    ShowProgress(before + (Done - before) * done / SweepPortCount);
    return !IsSearchEnded();
  });
  isLooking_ = false;
  // The names are those of the devices that were found, whatever the library can tell later.
  listed_.clear();
  for (const Port port : module_.FurtherPorts()) {
    listed_.push_back({port.Line(), module_.IdentificationOf(port)});
  }
  // A port that has not been found again leaves nothing behind.
  const std::optional<Port> used = module_.FurtherPort();
  UseFurtherPort(used && LineOf(*used) >= 0 ? used : std::nullopt);
  view_.hintsWithoutReader.Set(module_.HintsWithoutReader());
}

bool PortFlow::EndSearch() {
  if (!view_.isSearching.Value()) return false;
  isSearchEnded_ = true;
  view_.isSearching.Set(false);
  return isLooking_;
}

void PortFlow::Choose(Port port) {
  if (!port.IsTested()) UseFurtherPort(port);
  ChooseSlot(port.Slot());
}

void PortFlow::ChooseSlot(int slot) {
  ShowNotice(u"");
  const TerminalInfo& info = module_.TerminalOf(slot);
  view_.data.Set(info.Answered ? DataFrameOf(info, module_.InsuredOf(slot)) : EmptyDataFrame());
  module_.SelectSlot(slot);
  const std::optional<Port> port = module_.SelectedPort();
  ShowStatusText(port ? ChosenText(*port) : status_text::NoReader.toString());
}

void PortFlow::UseFurtherPort(std::optional<Port> port) {
  module_.UseFurtherPort(port);
  view_.furtherPorts.Set({.ports = listed_, .chosen = port ? LineOf(*port) : -1});
  view_.furtherPortName.Set(port ? port->Line() : FurtherPorts.toString());
  ShowSlot(FurtherPortSlot);
  if (port) {
    (void)ShowHint(*port);
  } else {
    view_.portHints[FurtherPortSlot].Set(SearchHint());
  }
  if (module_.CurrentSlot() == FurtherPortSlot) ShowCurrentData();
}

void PortFlow::Read(Port port) {
  ShowProgress(0);
  if (module_.TerminalOf(port.Slot()).DataRead) {
    ShowNotice(
        u"Die Daten wurden vorher gelesen. \"Zurücksetzen\" und dann \"Lesen\" liest sie neu.");
  } else {
    ReadLoopSteps steps = LoopSteps(port);
    steps.checkPort = [this, port] {
      Check(port);
      ShowProgress(ReadCheckDone);
    };
    RunReadLoop(steps, module_.Boxes(), display_);
  }
  ShowProgress(Done);
  ShowCurrentData();
  ShowStatusText(status_text::Shown);
}

void PortFlow::Diagnose(Port port) {
  ShowStatusText(status_text::DialogCheck);
  ShowProgress(0);
  view_.diagnosisStep.Set({});
  view_.diagnosedPort.Set(port.Name());
  view_.tabInFront.Set(port.Slot());
  RunGuidedDiagnosis({.hints = module_.Hints(),
                      .dialogs = module_.Boxes(),
                      .showStep = [this](const QString& step) { view_.diagnosisStep.Set(step); },
                      .checkPort = [this, port] { CheckInDiagnosis(port); },
                      .showTerminalStatus = [this] { ShowTerminalStatus(); }});
}

void PortFlow::CheckInDiagnosis(Port port) {
  if (module_.IsExitRequested()) return;
  const int slot = port.Slot();
  ShowStatusText(status_text::ScanCom.at(static_cast<std::size_t>(slot - 1)));
  ShowProgress(view_.progress.Value() + DiagnosisStep);
  view_.frame.Set(Frame::Wait);
  Check(port);
  view_.frame.Set(Frame::DialogCheck);
  const TerminalInfo& info = module_.TerminalOf(slot);
  if (info.Answered) {
    ReadLoopSteps steps = LoopSteps(port);
    steps.insertCardPrompt = [this, port] {
      return InsertCardPromptOfDiagnosis(port, IsMobile(port));
    };
    RunReadLoop(steps, module_.Boxes(), display_);
  }
  ShowStatusText(status_text::Shown);
  if (info.Answered && info.DataRead) {
    view_.frame.Set(Frame::Data);
    ShowCurrentData();
  } else {
    ShowTerminalStatus();
  }
}

void PortFlow::ShowTerminalStatus() {
  view_.frame.Set(Frame::TerminalStatus);
  ShowStatusText(status_text::TerminalStatus);
}

void PortFlow::ShowProgress(int percent) {
  view_.progress.Set(std::clamp(percent, 0, Done));
}

void PortFlow::ShowStatusText(QStringView text) {
  display_.ShowStatusText(text.toString());
}

void PortFlow::ShowCurrentData() {
  const int slot = module_.CurrentSlot();
  view_.data.Set(DataFrameOf(module_.TerminalOf(slot), module_.InsuredOf(slot)));
}

void PortFlow::ShowSlot(int slot) {
  view_.statusTabs[slot].Set(StatusTabOf(module_, slot));
}

void PortFlow::ShowWhatWasRead() {
  const std::optional<Port> port = module_.LinkPort();
  if (!port) return;
  const int slot = port->Slot();
  ShowSlot(slot);
  if (!module_.TerminalOf(slot).DataRead) return;
  view_.data.Set(DataFrameOf(module_.TerminalOf(slot), module_.InsuredOf(slot)));
  view_.frame.Set(Frame::Data);
}

QString PortFlow::ShowHint(Port port) {
  const QString hint = module_.HintFor(port);
  const int slot = port.Slot();
  view_.portHints[slot].Set(hint.isEmpty() ? WhyUnused(slot) : hint);
  return hint;
}

// What the check found where the port cannot be chosen.
QString PortFlow::WhyUnused(int slot) const {
  if (view_.isPortEnabled[slot].Value()) return {};
  return Port(slot).Name() + u": " + module_.PortOf(slot).PortText.Trimmed();
}

// The line of a port in the list of further ports, or -1.
int PortFlow::LineOf(Port port) const {
  const auto& ports = module_.FurtherPorts();
  const auto found = std::find(ports.begin(), ports.end(), port);
  return found == ports.end() ? -1 : static_cast<int>(found - ports.begin());
}

bool PortFlow::IsMobile(Port port) const {
  return module_.TerminalOf(port.Slot()).IsMobile();
}

ReadLoopSteps PortFlow::LoopSteps(Port port) {
  return {
      .checkPort = {},
      .checkStatus =
          [this, port] {
            const auto result = module_.StatusCheck(port);
            ShowSlot(port.Slot());
            return result;
          },
      .hint = [this, port] { return ShowHint(port); },
      .insertCardPrompt = [this, port] { return InsertCardPrompt(port, IsMobile(port)); },
      .read = [this, port] { return module_.ReadCardData(port); },
      .showSlot =
          [this, port] {
            ShowSlot(port.Slot());
            (void)ShowHint(port);
          },
  };
}

}  // namespace kartocheck
