#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "host/terminal_link.h"
#include "protocol/port_number.h"

namespace ctapi::host {

// A way to terminals, and the port numbers that it serves.
struct ServedPorts {
  PortRange Numbers;
  std::unique_ptr<Transport> Way;
};

// The library behind the four entry points: the links that are open, by the caller's number (ctn),
// and the port each leads to. Every function returns a code of the CT-API.
//
//  -1    a terminal number in use (init) or not in use (the others), a port without a terminal, no
//        command, no room for a response, a destination other than 0 and 1, a source other than 2
//  -11   the response does not fit the buffer; the command was carried out
//  -127  the port is open under another terminal number
class HostLibrary {
 public:
  // Of two that serve a number the first one counts.
  explicit HostLibrary(std::vector<ServedPorts> transports) : transports_(std::move(transports)) {}

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn);
  // dad and sad are rewritten to 2 (host) and the unit that answered. responseLength is the number
  // of bytes written, 0 on any code but 0.
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 ByteView command, std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength);
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn);
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud);

  // What is on the port, open or not; pn may be EveryReader. info is written only on success.
  [[nodiscard]] std::int8_t InfoOf(std::uint16_t pn, PortInfo& info);

 private:
  struct OpenPort {
    std::uint16_t Number = 0;
    std::unique_ptr<TerminalLink> Link{};
  };

  // Null for a number that nobody serves.
  [[nodiscard]] const ServedPorts* TransportOf(int pn) const;
  [[nodiscard]] PortTroubleKind TroubleOfReaders();

  std::vector<ServedPorts> transports_;
  std::map<std::uint16_t, OpenPort> links_;  // by ctn
  std::mutex mutex_;
};

}  // namespace ctapi::host
