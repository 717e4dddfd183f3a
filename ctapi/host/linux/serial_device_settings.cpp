#include "host/linux/serial_device_settings.h"

namespace ctapi::host {

void MakeRaw8E1(termios& settings) {
  ::cfmakeraw(&settings);
  // Left alone by cfmakeraw: CMSPAR would make the parity bit a constant one.
  settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | CRTSCTS | PARODD | CMSPAR);
  settings.c_cflag |= CS8 | PARENB | CREAD | CLOCAL;
  settings.c_iflag |= INPCK | PARMRK;
  settings.c_iflag &= ~static_cast<tcflag_t>(IGNPAR | IXON | IXOFF);
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
}

}  // namespace ctapi::host
