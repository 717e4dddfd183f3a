#pragma once

#include "ui/main_window/scan_result.h"

namespace kartocheck::test {

// COM 1 answers at 9600 baud, COM 2 over a virtual port, COM 3 is silent, COM 4 is not there, and
// so many terminals stand on further ports.
inline ScanResult EveryCase(int furtherCount = 1) {
  PerSlot<TerminalInfo> terminals;
  PerSlot<PortEntry> ports;
  terminals[1].Answered = true;
  ports[1].BaudText = u"9600";
  terminals[2].Answered = true;
  terminals[2].UsbVirtualCom = true;
  ports[3].ScanResult = -10;
  return ScanResultOf(terminals, ports, furtherCount);
}

}  // namespace kartocheck::test
