#pragma once

#include <QString>

#include <array>

#include "discovery/terminal_info.h"
#include "terminal/port_entry.h"
#include "terminal/slot.h"

namespace kartocheck {

// A row for each of COM 1 to COM 4.
inline constexpr int ScanResultRows = ctapi::TestedComPorts.Count();

// A row of the result window. The texts leave gaps, over which the port number and the key symbol
// are laid.
struct ScanResultRow {
  QString text{};
  QString number{};       // of the port; empty in an empty row
  bool showsKey = false;  // "Mit ... Taste fortfahren": the key symbol is shown
  bool isCentered = false;
  QString hint{};  // why nothing answered, where that is known
};

// What the result window shows after a full scan.
struct ScanResult {
  std::array<ScanResultRow, ScanResultRows> rows;
  QString summary;  // terminals on further ports; empty where there are none
};

// furtherCount: number of terminals found on further ports. isWhole: the search was not ended
// early.
[[nodiscard]] ScanResult ScanResultOf(const PerSlot<TerminalInfo>& terminals,
                                      const PerSlot<PortEntry>& ports, int furtherCount,
                                      bool isWhole = true);

}  // namespace kartocheck
