// A CT-API library that lacks one entry point (the build says which). The others must never be
// called.

#include <cstdint>
#include <cstdlib>

#include "ctnrv32.h"

// Nothing of a library is called that is refused; only the rate of a line may be missing.
[[nodiscard]] static std::int8_t Called() {
#ifdef WITHOUT_BAUDRATE
  return 0;
#else
  std::abort();
#endif
}

#ifndef WITHOUT_INIT
std::int8_t CTDENRVT1_init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  return Called();
}
#endif

#ifndef WITHOUT_DATA
std::int8_t CTDENRVT1_data(std::uint16_t /*ctn*/, std::uint8_t* /*dad*/, std::uint8_t* /*sad*/,
                           std::uint16_t /*lenc*/, const std::uint8_t* /*command*/,
                           std::uint16_t* /*lenr*/, std::uint8_t* /*response*/) {
  return Called();
}
#endif

#ifndef WITHOUT_CLOSE
std::int8_t CTDENRVT1_close(std::uint16_t /*ctn*/) {
  return Called();
}
#endif

#ifndef WITHOUT_BAUDRATE
std::int8_t CT_get_baudrate(std::uint16_t /*ctn*/, std::int32_t* /*baud*/) {
  return Called();
}
#endif
