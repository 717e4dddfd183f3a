#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "protocol/return_code.h"
#include "simulator/scripted_fault.h"
#include "simulator/serial_line.h"
#include "simulator/simulated_terminal.h"

namespace ctapi {

// One port of the PC: what is attached to it and how the library's calls on it end.
struct SimulatedPort {
  std::optional<SimulatedTerminal> Terminal{};
  // How init ends. Without a value: -1 for an absent port, -127 for one that another program holds
  // or that cannot be opened, 0 with a terminal; without one -10 on a serial port and -1 on USB.
  std::optional<std::int8_t> InitCode{};
  std::int8_t CloseCode = code::Success;  // the link is closed all the same
  // How CT_get_baudrate ends. Without a value: 0 on a serial port, -1 on USB.
  std::optional<std::int8_t> BaudCode{};
  std::int32_t Baud = 9600;
  // Every exchange on this port lasts at least this long.
  std::chrono::milliseconds Delay{0};
  std::vector<ScriptedFault> Faults{};
  // Without a value the line of a port with a terminal carries its signal and answers the probe
  // rightly at Baud; without a terminal it is present and silent.
  std::optional<SerialLine> Line{};
  // The operating system's identification of the device on the port.
  std::string DeviceId{};

  [[nodiscard]] SerialLine EffectiveLine() const;
};

// A PC with terminals on its ports, behind the four entry points of CTNRV32: the terminal of each
// open link is chosen by the caller's terminal number (ctn), ports by number (1 to 256 serial, 8192
// to 8447 USB). Every call returns a code of the CT-API.
//
//  -1    a terminal number in use (init) or not in use (the others), an unknown port, no command,
//        a destination other than 0 and 1, a source other than 2
//  -11   the response does not fit the buffer; the command was carried out
//  -127  the port is open under another terminal number
class SimulatedPractice {
 public:
  // Attaches a port, in place of one with the same number. A link open on it goes on with the new
  // one; the faults' counts begin anew.
  void Attach(std::uint16_t pn, SimulatedPort port);
  void Detach(std::uint16_t pn);

  // Nothing for a port that is not attached. Faults are changed by attaching anew.
  [[nodiscard]] SimulatedPort* PortAt(std::uint16_t pn);
  [[nodiscard]] SimulatedTerminal* TerminalAt(std::uint16_t pn);
  [[nodiscard]] SerialLine SerialLineAt(std::uint16_t pn) const;
  [[nodiscard]] std::vector<std::uint16_t> AttachedPorts() const;
  [[nodiscard]] std::size_t OpenLinks() const { return links_.size(); }

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn);
  // dad and sad are rewritten to 2 (host) and the unit addressed. responseLength is the number of
  // bytes written, 0 on any code but 0.
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 ByteView command, std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength);
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn);
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) const;

 private:
  struct AttachedPort {
    SimulatedPort Port;
    std::vector<unsigned> FaultCounts{};  // exchanges that concerned each fault so far
  };

  [[nodiscard]] const ScriptedFault* NextFault(AttachedPort& attached, ByteView command);

  std::map<std::uint16_t, AttachedPort> ports_;
  std::map<std::uint16_t, std::uint16_t> links_;  // ctn to pn
};

}  // namespace ctapi
