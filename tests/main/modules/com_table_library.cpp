// A CT-API library that finds nothing, and says which device it was told to be COM n.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "ctnrv32.h"
#include "protocol/com_table.h"

std::int8_t CTDENRVT1_init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  const char* const table = std::getenv(ctapi::ComTableVariable);
  std::fprintf(stderr, "<%s>\n", table == nullptr ? "none" : table);
  return -1;
}

std::int8_t CTDENRVT1_data(std::uint16_t /*ctn*/, std::uint8_t* /*dad*/, std::uint8_t* /*sad*/,
                           std::uint16_t /*lenc*/, const std::uint8_t* /*command*/,
                           std::uint16_t* /*lenr*/, std::uint8_t* /*response*/) {
  return -1;
}

std::int8_t CTDENRVT1_close(std::uint16_t /*ctn*/) {
  return -1;
}

std::int8_t CT_get_baudrate(std::uint16_t /*ctn*/, std::int32_t* /*baud*/) {
  return -1;
}
