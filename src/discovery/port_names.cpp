#include "discovery/port_names.h"

#include "terminal/slot.h"

namespace kartocheck {

QString PortName(int pn) {
  if (IsUsbPort(pn)) return u"USB Device " + QString::number(UsbDeviceNumber(pn));
  return (pn <= LastComPort ? u"COM " : u"?Device ") + QString::number(pn);
}

QString PortLine(int pn) {
  return PortName(pn) + u" (CTAPI pn=" + QString::number(pn) + u')';
}

}  // namespace kartocheck
