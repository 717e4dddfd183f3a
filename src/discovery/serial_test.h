#pragma once

#include "platform/event_loop.h"
#include "platform/port.h"
#include "platform/serial_port.h"
#include "terminal/port_entry.h"

namespace kartocheck {

// Outcome of opening and closing a port through the serial-port control.
enum class SerialTest {
  Opened = 0,
  NotPresent = 1,  // no such port
  InUse = 2,       // held by another program
  Failed = 3,      // any other failure
};

// Opens the port, COM 1 to 4, raises DTR, waits 500 ms and reads DSR into lineState (true: a device
// drives the line). lineState is written on success only.
[[nodiscard]] SerialTest TestSerialPort(Port port, SerialPort& serial, EventLoop& eventLoop,
                                        bool& lineState);

// Asks a terminal on the port for a resynchronisation at 9600, 19200, 38400, 57600 and 115200 baud
// in turn, even parity, 210 ms each. The first rate that is answered goes into the entry's
// AvailText; "Unbekannt! " stands there otherwise. Any failure of the port ends the probe.
void ProbeSerialSettings(Port port, SerialPort& serial, EventLoop& eventLoop, PortEntry& entry);

}  // namespace kartocheck
