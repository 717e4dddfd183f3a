#pragma once

#include "host/host_library.h"
#include "platform/ct_api.h"

namespace ctapi::host::test {

// The program's view of the host library, without the C interface in between.
class HostLibraryApi final : public kartocheck::CtApi {
 public:
  explicit HostLibraryApi(HostLibrary& library) : library_(library) {}

  std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override { return library_.Init(ctn, pn); }
  std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                   std::span<const std::uint8_t> command, std::span<std::uint8_t> response,
                   std::uint16_t& responseLength) override {
    return library_.Data(ctn, dad, sad, command, response, responseLength);
  }
  std::int8_t Close(std::uint16_t ctn) override { return library_.Close(ctn); }
  std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override {
    return library_.GetBaudrate(ctn, baud);
  }

  // As the C interface would tell it.
  [[nodiscard]] PortInfo InfoOf(int pn) {
    PortInfo info;
    return library_.InfoOf(static_cast<std::uint16_t>(pn), info) == code::Success ? info
                                                                                  : PortInfo{};
  }

 private:
  HostLibrary& library_;
};

}  // namespace ctapi::host::test
