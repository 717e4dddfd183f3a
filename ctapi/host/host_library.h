#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <span>

#include "host/terminal_link.h"

namespace ctapi::host {

// The library behind the four entry points: the links that are open, by the caller's number (ctn),
// and the port each leads to. Every function returns a code of the CT-API.
//
//  -1    a terminal number in use (init) or not in use (the others), a port without a terminal, no
//        command, no room for a response, a destination other than 0 and 1, a source other than 2
//  -11   the response does not fit the buffer; the command was carried out
//  -127  the port is open under another terminal number
class HostLibrary {
 public:
  HostLibrary(std::unique_ptr<Transport> serial, std::unique_ptr<Transport> readers)
      : serial_(std::move(serial)), readers_(std::move(readers)) {}

  // pn: 1 to 256 serial port COM n, 8192 to 8447 PC/SC reader.
  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn);
  // dad and sad are rewritten to 2 (host) and the unit that answered. responseLength is the number
  // of bytes written, 0 on any code but 0.
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 ByteView command, std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength);
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn);
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud);

 private:
  struct OpenPort {
    std::uint16_t Number = 0;
    std::unique_ptr<TerminalLink> Link{};
  };

  std::unique_ptr<Transport> serial_;
  std::unique_ptr<Transport> readers_;
  std::map<std::uint16_t, OpenPort> links_;  // by ctn
  std::mutex mutex_;
};

}  // namespace ctapi::host
