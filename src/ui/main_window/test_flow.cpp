#include "ui/main_window/test_flow.h"

#include <QFileInfo>

#include "egk/prepared_schema.h"
#include "text/lines.h"
#include "text/status_texts.h"

namespace kartocheck {

namespace {

// The member of Opti_Comx that stands for further ports.
constexpr int FurtherPortMember = FurtherPortSlot - 1;
constexpr int ProgressDone = 100;

}  // namespace

// From the click to the end of an action: busy, controls disabled.
class TestFlow::RunningAction {
 public:
  explicit RunningAction(TestFlow& flow) : flow_(flow) {
    flow_.module_.SetBusy(true);
    flow_.view_.isActionRunning.Set(true);
    flow_.ports_.ShowNotice(u"");
  }
  ~RunningAction() {
    flow_.view_.isActionRunning.Set(false);
    flow_.module_.SetBusy(false);
  }
  RunningAction(const RunningAction&) = delete;
  RunningAction& operator=(const RunningAction&) = delete;

 private:
  TestFlow& flow_;
};

TestFlow::TestFlow(Bas_MKT_Test& module, Dialogs& dialogs, Display& display, ViewState& view,
                   FrontEnd& frontEnd)
    : module_(module),
      dialogs_(dialogs),
      display_(display),
      view_(view),
      frontEnd_(frontEnd),
      ports_(module, display, view) {
  for (int slot = 1; slot < FurtherPortSlot; ++slot) ports_.ShowSlot(slot);
  ports_.UseFurtherPort(std::nullopt);
}

template <typename Work>
void TestFlow::RunAction(Work work) {
  if (module_.IsBusy()) return;
  {
    const RunningAction running(*this);
    work();
    module_.CloseLink();
  }
  if (module_.TakeExitRequest()) frontEnd_.CloseNow();
}

void TestFlow::Button(int index) {
  RunAction([&] {
    if (index < 0 || index >= ActionCount) return;
    Run(static_cast<Action>(index));
    ports_.ShowProgress(0);
  });
}

void TestFlow::Run(Action action) {
  const bool needsPort = action == Action::Diagnosis || action == Action::ReadCard;
  if (needsPort && !HasSelectedPort()) return;
  if (action <= Action::ReadCard) view_.frame.Set(static_cast<Frame>(action));
  switch (action) {
    case Action::FullScan:
      return FullScan();
    case Action::Diagnosis:
      return ports_.Diagnose(*module_.SelectedPort());
    case Action::ShowStatus:
      return ShowStatus();
    case Action::ReadCard:
      return ports_.Read(*module_.SelectedPort());
    case Action::CopyData:
      return CopyData();
    case Action::ResetFields:
      return ResetFields();
  }
}

void TestFlow::FullScan() {
  ports_.ShowProgress(0);
  {
    const PortFlow::Search search(ports_);
    ScanComPorts();
    ScanFurtherPorts();
  }
  ports_.ShowProgress(ProgressDone);
  ports_.ShowStatusText(status_text::ScanResult);
  ShowScanResult();
  view_.nextButton.Set(Action::ShowStatus);
  ports_.ShowTerminalStatus();
  if (!ShowFirstReadPort()) ChooseAnsweringPort();
}

void TestFlow::ScanComPorts() {
  constexpr ctapi::PortRange Tested = ctapi::TestedComPorts;
  for (int pn = Tested.First; pn <= Tested.Last && !ports_.IsSearchEnded(); ++pn) {
    ports_.Scan(Port(pn));
  }
}

void TestFlow::ScanFurtherPorts() {
  if (ports_.IsSearchEnded()) return;
  ports_.SweepFurtherPorts();
  if (module_.FurtherPorts().empty() || module_.IsExitRequested()) return;
  // The port that was chosen stays the one; without it the first that was found is taken.
  ports_.Scan(module_.FurtherPort().value_or(module_.FurtherPorts().front()));
}

void TestFlow::ShowScanResult() {
  if (module_.IsExitRequested()) return;
  ScanResult result =
      ScanResultOf(module_.Terminals(), module_.Ports(),
                   static_cast<int>(module_.FurtherPorts().size()), !ports_.IsSearchEnded());
  for (int row = 0; row < ScanResultRows; ++row) {
    ScanResultRow& shown = result.rows[static_cast<std::size_t>(row)];
    if (shown.showsKey) shown.hint = module_.HintFor(Port(row + 1));
  }
  frontEnd_.ShowScanResult(result);
}

bool TestFlow::ShowFirstReadPort() {
  for (int slot = 1; slot <= SlotCount; ++slot) {
    const TerminalInfo& info = module_.TerminalOf(slot);
    if (!info.Answered || !info.DataRead) continue;
    view_.frame.Set(Frame::Data);
    view_.markedPort.Set(slot - 1);
    ports_.ChooseSlot(slot);
    ports_.ShowStatusText(status_text::Shown);
    return true;
  }
  return false;
}

// What is pressed next is for a terminal that answers: the chosen port stays where one does.
void TestFlow::ChooseAnsweringPort() {
  if (module_.TerminalOf(module_.CurrentSlot()).Answered) return;
  for (int slot = 1; slot <= SlotCount; ++slot) {
    if (!module_.TerminalOf(slot).Answered) continue;
    view_.markedPort.Set(slot - 1);
    view_.tabInFront.Set(slot);
    return ports_.ChooseSlot(slot);
  }
}

void TestFlow::ShowStatus() {
  view_.tabInFront.Set(module_.CurrentSlot());
  ports_.ShowTerminalStatus();
}

void TestFlow::CopyData() {
  const int slot = module_.CurrentSlot();
  ports_.ShowStatusText(status_text::Copied);
  if (!module_.TerminalOf(slot).DataRead) {
    ports_.ShowNotice(u"Es sind keine Daten gelesen. Kopiert wurden nur leere Zeilen.");
  }
  frontEnd_.CopyToClipboard(ClipboardText(module_.TerminalOf(slot), module_.InsuredOf(slot)));
}

// Title and labels stay.
void TestFlow::ResetFields() {
  ports_.ShowStatusText(status_text::FieldsReset);
  DataFrame emptied = view_.data.Value();
  emptied.values.fill({});
  view_.data.Set(emptied);
  module_.ClearSlot(module_.CurrentSlot());
}

void TestFlow::ChoosePort(int member) {
  if (module_.IsBusy()) return;
  if (member == FurtherPortMember && module_.FurtherPorts().empty()) {
    RunAction([this] {
      const Frame before = view_.frame.Value();
      view_.frame.Set(Frame::Wait);
      ports_.ShowProgress(0);
      {
        const PortFlow::Search search(ports_);
        ports_.SweepFurtherPorts();
      }
      ports_.ShowProgress(0);
      view_.frame.Set(before);
    });
  }
  MoveToPort(member);
}

void TestFlow::MoveToPort(int member) {
  if (module_.IsBusy() || member < 0 || member > FurtherPortMember) return;
  const bool isFurther = member == FurtherPortMember;
  if (isFurther && !module_.FurtherPort() && !module_.FurtherPorts().empty()) {
    ports_.UseFurtherPort(module_.FurtherPorts().front());
  }
  ports_.ChooseSlot(member + 1);
}

void TestFlow::ChooseFurtherPort(int index) {
  const auto& ports = module_.FurtherPorts();
  if (module_.IsBusy() || index < 0 || index >= static_cast<int>(ports.size())) return;
  ports_.UseFurtherPort(ports[static_cast<std::size_t>(index)]);
  view_.markedPort.Set(FurtherPortMember);
  ports_.ChooseSlot(FurtherPortSlot);
}

void TestFlow::ChooseStatusTab() {
  if (!module_.IsBusy()) ports_.ShowStatusText(status_text::TerminalStatus);
}

void TestFlow::Watch(PendingCall& pending) {
  pending_ = &pending;
  pending.Late().Watch([this](bool isLate) {
    view_.isCallLate.Set(isLate);
    if (isLate) ports_.ShowStatusText(status_text::NotAnsweredYet);
  });
}

void TestFlow::EndSearch() {
  if (ports_.EndSearch() && pending_ != nullptr) pending_->GiveUp();
}

void TestFlow::GiveUp() {
  if (!view_.isCallLate.Value()) return;
  ports_.ShowStatusText(status_text::GivenUp);
  pending_->GiveUp();
}

bool TestFlow::MayClose(CloseSource source) {
  if (module_.IsBusy()) {
    module_.RequestExit();
    return false;
  }
  if (source == CloseSource::User) {
    const Answer answer =
        dialogs_.Ask({.title = QStringLiteral("Beendet KartoCheck "),
                      .text = QStringLiteral(" Möchten Sie das Programm beenden? ")});
    if (answer != Answer::Yes) return false;
  }
  module_.CloseLink();
  return true;
}

EgkInfo TestFlow::CurrentEgkInfo() const {
  const int slot = module_.CurrentSlot();
  return EgkInfoOf(module_.TerminalOf(slot), module_.EgkOf(slot));
}

void TestFlow::SetValidation(bool on) {
  if (module_.IsBusy()) return;
  module_.SetValidation(on);
  ports_.ShowNotice(u"\"Validierung\" wirkt beim nächsten Lesen.");
}

void TestFlow::LoadSchema(VsdKind kind, const QString& file) {
  if (module_.IsBusy()) return;
  const QString name = QFileInfo(file).fileName();
  HeldSchema chosen;
  chosen.SetText(ReadSchemaText(file));
  if (!chosen.Prepared().IsUsable()) {
    const QStringView reason =
        chosen.Prepared().HasRoot()
            ? u"Die Datei enthält kein Schema, das für sich allein verwendet werden kann."
            : u"Die Datei ist nicht lesbar oder enthält kein XML.";
    return dialogs_.Tell(Icon::Exclamation, Dialogs::Title.toString(),
                         Lines({u"Das Schema konnte nicht geladen werden:", name, u"", reason,
                                u"Das bisherige Schema wird weiter verwendet."}));
  }
  module_.SetSchema(kind, chosen);
  display_.ShowStatusText(u"Das Schema " + name + u" wurde geladen");
}

// The entry for further ports may be chosen while there is none.
bool TestFlow::HasSelectedPort() {
  if (!module_.SelectedPort()) ports_.ShowStatusText(status_text::NoReader);
  return module_.SelectedPort().has_value();
}

}  // namespace kartocheck
