#pragma once

// Port numbers of the CT-API (pn): which kind of port a number stands for, and which one of its
// kind.
namespace ctapi {

enum class PortKind {
  Com,    // COM n is n
  Usb,    // the i-th device of the driver (i from 0) is 8192 + i
  Other,  // anything else
};

// Port numbers from the first to the last, both included.
struct PortRange {
  int First;
  int Last;

  [[nodiscard]] constexpr bool Contains(int pn) const { return pn >= First && pn <= Last; }
  [[nodiscard]] constexpr int Count() const { return Last - First + 1; }
};

inline constexpr PortRange ComPorts{1, 256};
inline constexpr PortRange UsbPorts{8192, 8447};

// COM 1 to COM 4: the ports that every PC may have on board. The program looks at them through the
// serial-port control and keeps a record for each; all further ports share one.
inline constexpr PortRange TestedComPorts{1, 4};

[[nodiscard]] constexpr PortKind KindOfPort(int pn) {
  if (ComPorts.Contains(pn)) return PortKind::Com;
  return UsbPorts.Contains(pn) ? PortKind::Usb : PortKind::Other;
}

}  // namespace ctapi
