#include "discovery/port_check.h"

#include "discovery/terminal_identification.h"

namespace kartocheck {

void CheckPort(int pn, const PortCheckTarget& target) {
  ResetTerminalInfo(target.info);
  target.port = {};
  target.info.Answered = false;
  target.port.ScanResult = target.link.CtOpen(pn);
  if (target.port.ScanResult == ct_code::Success) {
    (void)IdentifyTerminal(target.link, pn, target.info, target.port);
    target.link.CtClose();
    if (target.port.PortText.IsBlank()) target.port.PortText = PortDescription(pn, false);
  }
  target.display.ShowSlot(SlotOf(pn));
}

}  // namespace kartocheck
