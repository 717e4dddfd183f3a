#include <algorithm>

#include "ctnrv32.h"
#include "host/the_library.h"

// The C entry points of CTNRV32 over the serial lines and PC/SC readers of this machine.
namespace {

namespace code = ctapi::code;

template <typename Operation>
std::int8_t OnLibrary(Operation operation) noexcept {
  try {
    return operation(ctapi::host::TheLibrary());
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

std::int8_t CTNRV32_CALL KARTOCHECK_port_info(std::uint16_t pn, std::uint8_t* trouble,
                                              std::uint16_t* length, std::uint8_t* name) {
  if (!trouble || !length || !name) return code::InvalidParameter;
  const std::uint16_t room = *length;
  *trouble = 0;
  *length = 0;
  return OnLibrary([=](auto& library) {
    ctapi::PortInfo info;
    const std::int8_t result = library.InfoOf(pn, info);
    if (result != code::Success) return result;
    if (info.Name.size() > room) return code::BufferTooSmall;
    std::copy(info.Name.begin(), info.Name.end(), name);
    *length = static_cast<std::uint16_t>(info.Name.size());
    *trouble = static_cast<std::uint8_t>(info.Trouble);
    return code::Success;
  });
}
