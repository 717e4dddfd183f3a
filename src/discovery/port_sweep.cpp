#include "discovery/port_sweep.h"

namespace kartocheck {

namespace {

constexpr int PortsPerKind = 256;
// COM 1 to 4 are checked through the serial-port control and neither told nor listed here.
constexpr int PortsCheckedElsewhere = 4;

}  // namespace

QString PortCheckText(int pn) {
  if (IsUsbPort(pn)) return u"Programm prüft USB Device " + QString::number(UsbDeviceNumber(pn));
  return u"Programm prüft die serielle Schnittstelle COM " + QString::number(pn);
}

std::vector<int> SweepCtApiPorts(CtSession& link, Display& display,
                                 const std::function<bool(int done)>& beforePort) {
  std::vector<int> found;
  for (int i = 0; i < PortsPerKind; ++i) {
    if (!beforePort(i)) return found;
    const int pn = FirstComPort + i;
    const bool isFurther = i >= PortsCheckedElsewhere;
    if (isFurther) display.ShowStatusText(PortCheckText(pn));
    if (link.CtTryPort(pn) == ctapi::code::Success && isFurther) found.push_back(pn);
  }
  for (int i = 0; i < PortsPerKind; ++i) {
    if (!beforePort(PortsPerKind + i)) return found;
    const int pn = FirstUsbPort + i;
    display.ShowStatusText(PortCheckText(pn));
    if (link.CtTryPort(pn) == ctapi::code::Success) found.push_back(pn);
  }
  return found;
}

}  // namespace kartocheck
