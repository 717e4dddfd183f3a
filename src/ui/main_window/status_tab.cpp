#include "ui/main_window/status_tab.h"

#include "app/bas_mkt_test.h"

namespace kartocheck {

StatusTab StatusTabOf(const Bas_MKT_Test& module, int slot) {
  const PortEntry& port = module.PortOf(slot);
  const TerminalInfo& info = module.TerminalOf(slot);
  return {port.PortText.Trimmed(),    port.AvailText.Trimmed(),
          info.ModelName.Trimmed(),   info.ManufacturerId.Trimmed(),
          info.ProductCode.Trimmed(), info.SoftwareVersion.Trimmed(),
          info.DisplayText.Trimmed(), module.IdentificationOf(slot)};
}

}  // namespace kartocheck
