#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include "platform/shown.h"
#include "terminal/slot.h"
#include "ui/main_window/data_frame.h"
#include "ui/main_window/status_tab.h"

namespace kartocheck {

// The buttons of CmdB_MKt_Test, by index.
enum class Action { FullScan = 0, Diagnosis, ShowStatus, ReadCard, CopyData, ResetFields };
inline constexpr int ActionCount = 6;

// The frames of Fram_Show, by index. Actions 0 to 3 show the frame of their own index.
enum class Frame { Wait = 0, DialogCheck, TerminalStatus, Data };
inline constexpr int FrameCount = 4;

// An entry of the list of further ports.
struct ListedPort {
  QString line;
  QString device;  // how the device behind it is called; empty where that is not known

  friend bool operator==(const ListedPort&, const ListedPort&) = default;
};

// The list of further ports, and the line of the one that slot 5 stands for, or -1.
struct PortList {
  std::vector<ListedPort> ports;
  int chosen = -1;
};

// What the flows have to show besides status text and message boxes. The window draws it; a front
// end that draws nothing of it reads what it wants.
struct ViewState {
  ViewState() {
    for (Shown<bool>& isEnabled : isPortEnabled) isEnabled.Set(true);
  }

  Shown<int> progress;  // 0 to 100 percent
  Shown<Frame> frame{Frame::Data};
  Shown<DataFrame> data{EmptyDataFrame()};
  // Whether an action runs: whatever could start a second one is disabled then.
  Shown<bool> isActionRunning;
  // Whether a search for terminals runs, which the user may end.
  Shown<bool> isSearching;
  // Whether the terminal has not answered for so long that the user may give up.
  Shown<bool> isCallLate;
  // What the status text leaves open about what was done last; empty where nothing.
  Shown<QString> notice;
  // The button that the user goes on from when the action has ended; none: the one pressed.
  Shown<std::optional<Action>> nextButton;

  // The status tabs, and the slot whose tab is in front.
  PerSlot<Shown<StatusTab>> statusTabs;
  Shown<int> tabInFront{1};
  // Title of the fifth tab.
  Shown<QString> furtherPortName{QStringLiteral("weitere ...")};

  // The port choice: the member of Opti_Comx that is marked, 0 to 4; which ports can be chosen;
  // why a port cannot be used, or what choosing it does, and why the list names no reader (empty
  // where nothing is to say).
  Shown<int> markedPort;
  PerSlot<Shown<bool>> isPortEnabled;
  PerSlot<Shown<QString>> portHints;
  Shown<PortList> furtherPorts;
  Shown<QStringList> hintsWithoutReader;

  // The port that the guided diagnosis is about, and what it is asking about.
  Shown<QString> diagnosedPort;
  Shown<QString> diagnosisStep;
};

}  // namespace kartocheck
