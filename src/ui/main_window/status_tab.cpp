#include "ui/main_window/status_tab.h"

#include "app/bas_mkt_test.h"

namespace kartocheck {

StatusTab StatusTabOf(const PortEntry& port, const TerminalInfo& info,
                      const QString& identification) {
  return {port.PortText.Trimmed(),    port.AvailText.Trimmed(),
          info.ModelName.Trimmed(),   info.ManufacturerId.Trimmed(),
          info.ProductCode.Trimmed(), info.SoftwareVersion.Trimmed(),
          info.DisplayText.Trimmed(), identification};
}

StatusTab StatusTabOf(const Bas_MKT_Test& module, int slot) {
  return StatusTabOf(module.PortOf(slot), module.TerminalOf(slot), module.IdentificationOf(slot));
}

}  // namespace kartocheck
