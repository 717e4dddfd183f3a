#include "ui/main_window/test_flow.h"

#include "text/lines.h"
#include "text/status_texts.h"

namespace kartocheck {

// From the click to the end of an action: busy, controls disabled. Its end closes a link left open,
// gives the controls back and closes the window where that was asked for meanwhile.
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

void TestFlow::Button(int index) {
  if (module_.Busy) return;
  {
    const RunningAction running(*this);
    if (index >= 0 && index <= 5) {
      Run(static_cast<Action>(index));
      display_.ShowProgress(0);
    }
    if (module_.IsLinkOpen()) module_.CloseLink();
  }
  if (module_.ExitRequested) {
    module_.ExitRequested = false;
    frontEnd_.CloseNow();
  }
}

void TestFlow::Run(Action action) {
  if (action <= Action::ReadCard) display_.ShowFrameX(static_cast<int>(action));
  switch (action) {
    case Action::FullScan:
    case Action::Diagnosis:
      break;
    case Action::ShowStatus:
      display_.ShowStatusText(status_text::TerminalStatus.toString());
      break;
    case Action::ReadCard:
      ReadCard();
      break;
    case Action::CopyData:
      CopyData();
      break;
    case Action::ResetFields:
      ResetFields();
      break;
  }
}

void TestFlow::ReadCard() {
  const int pn = module_.SelectedPort;
  display_.ShowProgress(0);
  if (!module_.Terminals[SlotOf(pn)].DataRead) {
    ReadLoopSteps steps = LoopSteps(pn);
    steps.checkPort = [this, pn] {
      module_.CheckPort(pn);
      display_.ShowProgress(50);
    };
    RunReadLoop(steps, module_.Boxes(), display_);
  }
  display_.ShowProgress(100);
  ShowCurrentData();
  display_.ShowStatusText(status_text::Shown.toString());
}

void TestFlow::ScanPort(int pn) {
  const int slot = SlotOf(pn);
  module_.CheckPort(pn);
  if (module_.Terminals[slot].Answered) RunReadLoop(LoopSteps(pn), module_.Boxes(), display_);
}

ReadLoopSteps TestFlow::LoopSteps(int pn) {
  return {
      .checkPort = {},
      .checkStatus = [this, pn] { return module_.StatusCheck(pn); },
      .insertCardPrompt = [this, pn] { return InsertCardPrompt(pn); },
      .read = [this, pn] { return module_.ReadCardData(pn); },
      .showSlot = [this, pn] { display_.ShowSlot(SlotOf(pn)); },
  };
}

void TestFlow::CopyData() {
  const int slot = module_.CurrentPort;
  display_.ShowStatusText(status_text::Copied.toString());
  frontEnd_.CopyToClipboard(ClipboardText(module_.Terminals[slot], module_.Insured[slot]));
}

void TestFlow::ResetFields() {
  display_.ShowStatusText(status_text::FieldsReset.toString());
  frontEnd_.ClearData();
  module_.ClearSlot(module_.CurrentPort);
}

void TestFlow::ShowCurrentData() {
  const int slot = module_.CurrentPort;
  frontEnd_.ShowData(DataFrameOf(module_.Terminals[slot], module_.Insured[slot]));
}

void TestFlow::ChoosePort(int member) {
  constexpr std::array<QStringView, 4> Chosen{
      u"Die serielle Schnittstelle COM 1 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 2 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 3 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 4 wurde ausgewählt",
  };
  const auto index = static_cast<std::size_t>(member);
  if (module_.Busy || index >= Chosen.size()) return;

  const int port = member + 1;
  const TerminalInfo& info = module_.Terminals[port];
  frontEnd_.ShowData(info.Answered ? DataFrameOf(info, module_.Insured[port]) : EmptyDataFrame());
  module_.SelectedPort = port;
  module_.CurrentPort = port;
  display_.ShowStatusText(Chosen[index].toString());
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
          info.DisplayText.Trimmed(), QString()};
}

Question TestFlow::InsertCardPrompt(int pn) const {
  const bool mobile = module_.Terminals[SlotOf(pn)].IsMobile();
  const QString card = Lines({u" Bitte eine Krankenversichertenkarte in ",
                              u" Kartenkontaktiereinheit 1 einführen. ", u"", u""});
  const QString mobileHint = Lines({u" Ist am Vedra Handy F der PC-Mode auf ",
                                    u" Handy lesen eingestellt oder am Serie Sigma Gerät ",
                                    u" die Betriebsart Mobil PC bzw. Mob. PC+Weiche oder ",
                                    u" am Serie Delta Gerät die Betriebsart Mobil eingestellt, ",
                                    u" so wird der gelesene Datensatz durch ",
                                    u" diese Testsoftware automatisch gelöscht! ", u"", u""});
  const QString port = Lines({u" Das Chipkartenterminal verwendet die Schnittstelle: ", u"",
                              QString(u" COM  " + QString::number(pn))});
  return {.title = Dialogs::Title.toString(),
          .text = card + (mobile ? mobileHint : QString()) + port,
          .icon = Icon::Exclamation,
          .buttons = Buttons::OkCancel,
          .preselected = Answer::Cancel};
}

}  // namespace kartocheck
