#include "platform/port.h"

namespace kartocheck {

namespace {

QString NumberInBrackets(int number) {
  return u"(CTAPI pn=" + QString::number(number) + u')';
}

}  // namespace

QString Port::Name() const {
  switch (Kind()) {
    case PortKind::Com:
      return u"COM " + QString::number(ShownNumber());
    case PortKind::Usb:
      return u"USB Device " + QString::number(ShownNumber());
    case PortKind::Other:
      break;
  }
  return u"?Device " + QString::number(ShownNumber());
}

QString Port::Line() const {
  return Name() + u' ' + NumberInBrackets(number_);
}

QString Port::Description(bool isVirtualCom) const {
  switch (Kind()) {
    case PortKind::Com:
      return (isVirtualCom ? u"USB Virtuell COM " : u"COM ") + NumberInBrackets(number_);
    case PortKind::Usb:
      return u"USB " + NumberInBrackets(number_);
    case PortKind::Other:
      break;
  }
  return u"? " + NumberInBrackets(number_);
}

}  // namespace kartocheck
