#include "ctnrv32.h"
#include "host/host_library.h"
#include "host/pcsc_transport.h"
#include "host/serial_transport.h"

// The C entry points of CTNRV32 over the serial lines and PC/SC readers of this machine.
namespace {

namespace code = ctapi::code;

ctapi::host::HostLibrary& TheLibrary() {
  static ctapi::host::HostLibrary library(
      std::make_unique<ctapi::host::SerialTransport>(),
      std::make_unique<ctapi::host::PcscTransport>(ctapi::host::LoadPcscApi()));
  return library;
}

template <typename Operation>
std::int8_t OnLibrary(Operation operation) noexcept {
  try {
    return operation(TheLibrary());
  } catch (...) {
    return code::HtsiError;
  }
}

}  // namespace

std::int8_t CTNRV32_CALL CTDENRVT1_init(std::uint16_t ctn, std::uint16_t pn) {
  return OnLibrary([=](auto& library) { return library.Init(ctn, pn); });
}

std::int8_t CTNRV32_CALL CTDENRVT1_data(std::uint16_t ctn, std::uint8_t* dad, std::uint8_t* sad,
                                        std::uint16_t lenc, const std::uint8_t* command,
                                        std::uint16_t* lenr, std::uint8_t* response) {
  if (!dad || !sad || !command || !lenr || !response) return code::InvalidParameter;
  return OnLibrary([=](auto& library) {
    return library.Data(ctn, *dad, *sad, {command, lenc}, {response, *lenr}, *lenr);
  });
}

std::int8_t CTNRV32_CALL CTDENRVT1_close(std::uint16_t ctn) {
  return OnLibrary([=](auto& library) { return library.Close(ctn); });
}

std::int8_t CTNRV32_CALL CT_get_baudrate(std::uint16_t ctn, std::int32_t* baud) {
  if (!baud) return code::InvalidParameter;
  return OnLibrary([=](auto& library) { return library.GetBaudrate(ctn, *baud); });
}
