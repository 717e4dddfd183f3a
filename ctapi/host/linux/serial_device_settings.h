#pragma once

#include <termios.h>

namespace ctapi::host {

// Makes of a device's settings those of the block protocol, whatever another program left in them:
// 8 data bits, even parity, one stop bit, no flow control, every byte as it comes. Bytes with a
// wrong parity or without their stop bit are marked (PARMRK). The rate stays.
void MakeRaw8E1(termios& settings);

}  // namespace ctapi::host
