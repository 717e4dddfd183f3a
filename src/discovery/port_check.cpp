#include "discovery/port_check.h"

#include "discovery/terminal_identification.h"

namespace kartocheck {

namespace {

// A terminal inherits nothing from the one that was on the port before.
void ForgetTerminal(TerminalInfo& info) {
  ResetTerminalInfo(info);
  info.Answered = false;
  info.SelectRefused = false;
  info.Reset95 = false;
  info.Reset9501 = false;
  info.UsbVirtualCom = false;
}

}  // namespace

void CheckPort(int pn, const PortCheckTarget& target) {
  ForgetTerminal(target.info);
  target.port = {};
  target.port.ScanResult = target.link.CtOpen(pn);
  if (target.port.ScanResult == ct_code::Success) {
    (void)IdentifyTerminal(target.link, pn, target.info, target.port);
    target.link.CtClose();
    if (target.port.PortText.IsBlank()) target.port.PortText = PortDescription(pn, false);
  }
  target.display.ShowSlot(SlotOf(pn));
}

}  // namespace kartocheck
