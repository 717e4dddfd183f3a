#pragma once

#include <QString>
#include <QStringView>

#include <array>

#include "discovery/terminal_info.h"
#include "platform/port.h"
#include "terminal/port_entry.h"

namespace kartocheck {

class Bas_MKT_Test;

// The rows of a status tab, top to bottom: port, baud rate, model, maker, CT type, software
// version, output medium, PnP device; the last is how the device is called.
inline constexpr auto StatusRowLabels = std::to_array<QStringView>({
    u"Serielle Schnittstelle:",
    u"Baudrate:",
    u"PKT Modell:",
    u"Hersteller:",
    u"CT-Typ:",
    u"Software Version:",
    u"Ausgabemedium:",
    u"PnP Device ID:",
});
inline constexpr int StatusRowCount = StatusRowLabels.size();
using StatusTab = std::array<QString, StatusRowCount>;

// The label of a row, from 0, on the tab of a slot. A further port need not be a serial one.
[[nodiscard]] inline QStringView StatusRowLabel(int slot, int row) {
  if (slot == FurtherPortSlot && row == 0) return u"Schnittstelle:";
  return StatusRowLabels.at(static_cast<std::size_t>(row));
}

// The values of a port's tab.
[[nodiscard]] StatusTab StatusTabOf(const PortEntry& port, const TerminalInfo& info,
                                    const QString& identification);
// The values of a slot's tab.
[[nodiscard]] StatusTab StatusTabOf(const Bas_MKT_Test& module, int slot);

}  // namespace kartocheck
