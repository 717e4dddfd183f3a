#pragma once

#include <QString>

#include <functional>

#include "discovery/terminal_info.h"
#include "platform/event_loop.h"
#include "platform/port.h"
#include "platform/serial_port.h"
#include "terminal/ct_session.h"
#include "terminal/port_entry.h"

namespace kartocheck {

// What a check keeps of the terminal that was on the port before. The status check's advice depends
// on whether one once answered there; a scan begins anew.
enum class Remember { ThatItAnswered, Nothing };

// The link and the records of one slot, and what a check needs of the outside.
struct PortCheckTarget {
  CtSession& link;
  TerminalInfo& info;
  PortEntry& port;
  SerialPort& serial;
  EventLoop& eventLoop;
  // Serial settings that the list of further ports tells for a port; empty where it tells none.
  std::function<QString(Port port)> settingsOf;
  // Asked before the link is opened; false ends the check there.
  std::function<bool()> goesOn = [] { return true; };
  Remember remember = Remember::ThatItAnswered;
};

// Outcomes in PortEntry::ScanResult beside the CT-API codes.
namespace scan_result {
inline constexpr int LinkOpened = 0;
inline constexpr int NotAvailable = 1;  // the port does not exist or is in use
inline constexpr int PortError = 3;     // opening the port failed for another reason
inline constexpr int NoLineSignal = 4;  // the link opened although no line signal was seen
inline constexpr int NoTerminal = 5;    // the port is free, but no link could be opened
}  // namespace scan_result

// Decides whether the port exists and is free, whether a terminal answers on it, and which one.
// COM 1 to 4 are tested through the serial-port control first, further ports (5 and up) through the
// CT-API library only. The outcome is in the slot's two records, which are emptied first; the link
// is closed in every case.
void CheckPort(Port port, const PortCheckTarget& target);

}  // namespace kartocheck
