#pragma once

#include <QString>

#include <algorithm>

#include "protocol/port_number.h"

namespace kartocheck {

using ctapi::PortKind;

// Number of per-port records. COM 1 to COM 4 have a slot each, every further port shares slot 5.
inline constexpr int SlotCount = ctapi::TestedComPorts.Count() + 1;
inline constexpr int FurtherPortSlot = SlotCount;

// A port as the CT-API numbers it (pn): what kind it is, which record it has, and what it is
// called.
class Port {
 public:
  // Any number; one below 1 is an error of the caller.
  constexpr explicit Port(int number) : number_(number) {}

  // For the library, and for texts that tell it.
  [[nodiscard]] constexpr int Number() const { return number_; }
  [[nodiscard]] constexpr PortKind Kind() const { return ctapi::KindOfPort(number_); }
  [[nodiscard]] constexpr bool IsUsb() const { return Kind() == PortKind::Usb; }
  // COM 1 to COM 4: looked at through the serial-port control, with a slot of its own.
  [[nodiscard]] constexpr bool IsTested() const { return ctapi::TestedComPorts.Contains(number_); }
  // The slot, 1 to 5, whose records are the port's.
  [[nodiscard]] constexpr int Slot() const { return std::min(number_, FurtherPortSlot); }
  // The number that users know it by: n of COM n, from 1 on for USB devices.
  [[nodiscard]] constexpr int ShownNumber() const {
    return IsUsb() ? number_ - ctapi::UsbPorts.First + 1 : number_;
  }

  // "COM 7", "USB Device 1", "?Device 300".
  [[nodiscard]] QString Name() const;
  // A line of the list of further ports: the name and "(CTAPI pn=N)".
  [[nodiscard]] QString Line() const;
  // What is said of a port that has a terminal: "COM (CTAPI pn=1)", "USB Virtuell COM (CTAPI
  // pn=3)", "USB (CTAPI pn=8192)", "? (CTAPI pn=300)". isVirtualCom: a COM number that is a USB
  // cable's.
  [[nodiscard]] QString Description(bool isVirtualCom) const;

  friend constexpr bool operator==(Port, Port) = default;

 private:
  int number_;
};

}  // namespace kartocheck
