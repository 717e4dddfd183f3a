#pragma once

#include <cstdint>
#include <span>

#include "platform/library_fault.h"

namespace kartocheck {

// The CT-API library as the program sees it: the four entry points of CTNRV32. Every function
// returns the library's signed 8-bit code: 0 success, -1 invalid parameter, -8 terminal error,
// -10 transmission error, -11 memory error (buffer too small), -127 host error, -128 HTSI error.
//
// A library that cannot be used is no code but an exception, from the call that shows it and never
// from construction: LibraryNotFound when it cannot be loaded, LibraryUnusable when it lacks an
// entry point or does not survive the call.
class CtApi {
 public:
  // ctn: number of the card terminal, 0 to 65,535. pn: port number, 1 to 256 serial, 8192 to 8447
  // USB.
  [[nodiscard]] virtual std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) = 0;

  // dad in: 1 terminal, 0 card in slot 1; sad in: 2, the host. On return sad names the unit that
  // answered. responseLength: the length reported by the library, in bytes; a faulty library may
  // report more than response.size().
  [[nodiscard]] virtual std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                         std::span<const std::uint8_t> command,
                                         std::span<std::uint8_t> response,
                                         std::uint16_t& responseLength) = 0;

  [[nodiscard]] virtual std::int8_t Close(std::uint16_t ctn) = 0;

  // baud: the line's rate in baud, written only on success.
  [[nodiscard]] virtual std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) = 0;

  virtual ~CtApi() = default;
  CtApi(const CtApi&) = delete;
  CtApi& operator=(const CtApi&) = delete;

 protected:
  CtApi() = default;
};

}  // namespace kartocheck
