#pragma once

#include <QString>

#include <optional>

#include "app/bas_mkt_test.h"
#include "diagnosis/read_loop.h"
#include "ui/main_window/view_state.h"

namespace kartocheck {

// What the buttons do with one port, or with the search for further ports, each by its name: for
// the window and the console alike. What there is to show stands in the view state afterwards.
class PortFlow {
 public:
  PortFlow(Bas_MKT_Test& module, Display& display, ViewState& view)
      : module_(module),
        display_(display),
        view_(view),
        beforeFatal_(module.BeforeFatalMessage([this] { ShowWhatWasRead(); })) {}

  // One port of a scan: checks it, and reads where a terminal was found.
  void Scan(Port port);
  // Looks for further ports and lists them.
  void SweepFurtherPorts();

  // A search over several ports, from its making to its end.
  class Search {
   public:
    explicit Search(PortFlow& flow) : flow_(flow) {
      flow_.isSearchEnded_ = false;
      flow_.view_.isSearching.Set(true);
    }
    ~Search() { flow_.view_.isSearching.Set(false); }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

   private:
    PortFlow& flow_;
  };
  // Ends the running search: no further port is looked at. True where a port is being looked at
  // for a terminal: the call that this waits for may be given up. A read is not broken off.
  [[nodiscard]] bool EndSearch();
  // Whether the last search was ended, by the user or since the program is to end.
  [[nodiscard]] bool IsSearchEnded() const { return isSearchEnded_ || module_.IsExitRequested(); }

  // Makes the port the selected one and shows its data.
  void Choose(Port port);
  // The same for what a slot, 1 to 5, stands for.
  void ChooseSlot(int slot);
  // Makes slot 5 stand for this port, or for none.
  void UseFurtherPort(std::optional<Port> port);

  // Reads the card or record on the port, unless its data are there already, and shows the data.
  void Read(Port port);
  // Asks the questions of the guided diagnosis.
  void Diagnose(Port port);

  // Fills the status tab of a slot, 1 to 5, from its records.
  void ShowSlot(int slot);
  void ShowTerminalStatus();
  void ShowProgress(int percent);
  // Says beside the status text what that leaves open; an empty text says nothing.
  void ShowNotice(QStringView text) { view_.notice.Set(text.toString()); }
  void ShowStatusText(QStringView text);
  // Draws the current slot's data.
  void ShowCurrentData();

 private:
  void Check(Port port, Remember remember = Remember::ThatItAnswered);
  // The check that ends a diagnosis whose advice the user can follow at once.
  void CheckInDiagnosis(Port port);
  // The data on the port of the link, where there are any.
  void ShowWhatWasRead();
  void CheckNow(Port port, Remember remember);
  QString ShowHint(Port port);
  [[nodiscard]] QString WhyUnused(int slot) const;
  [[nodiscard]] int LineOf(Port port) const;
  [[nodiscard]] bool IsMobile(Port port) const;
  [[nodiscard]] ReadLoopSteps LoopSteps(Port port);

  Bas_MKT_Test& module_;
  Display& display_;
  ViewState& view_;
  const CtSession::BeforeFatal beforeFatal_;
  std::vector<ListedPort> listed_;  // what the last sweep found
  bool isSearchEnded_ = false;
  bool isLooking_ = false;  // at a port for a terminal
};

}  // namespace kartocheck
