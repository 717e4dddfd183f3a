#include "discovery/port_sweep.h"

namespace kartocheck {

namespace {

// COM 1 to 4 are opened as well, but neither told nor listed: they are checked through the
// serial-port control.
void TryPort(Port port, CtSession& link, Display& display, std::vector<Port>& found) {
  if (!port.IsTested()) display.ShowStatusText(PortCheckText(port));
  const bool answers = link.CtTryPort(port) == ctapi::code::Success;
  if (answers && !port.IsTested()) found.push_back(port);
}

}  // namespace

QString PortCheckText(Port port) {
  const QString number = QString::number(port.ShownNumber());
  if (port.IsUsb()) return u"Programm prüft USB Device " + number;
  return u"Programm prüft die serielle Schnittstelle COM " + number;
}

std::vector<Port> SweepCtApiPorts(CtSession& link, Display& display,
                                  const std::function<bool(int done)>& beforePort) {
  std::vector<Port> found;
  int done = 0;
  for (const ctapi::PortRange& range : {ctapi::ComPorts, ctapi::UsbPorts}) {
    for (int pn = range.First; pn <= range.Last; ++pn) {
      if (!beforePort(done++)) return found;
      TryPort(Port(pn), link, display, found);
    }
  }
  return found;
}

}  // namespace kartocheck
