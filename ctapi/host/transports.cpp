#include "host/transports.h"

#include "host/pcsc_transport.h"
#include "host/serial_transport.h"

namespace ctapi::host {

// The first that serves a number counts: what takes a part of another's numbers stands before it.
std::vector<ServedPorts> MakeTransports() {
  std::vector<ServedPorts> transports;
  transports.push_back({UsbPorts, std::make_unique<PcscTransport>(LoadPcscApi())});
  transports.push_back({ComPorts, std::make_unique<SerialTransport>()});
  return transports;
}

}  // namespace ctapi::host
