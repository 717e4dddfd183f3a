#include "platform/machine_ports.h"
#include "platform/reader_directory.h"

namespace kartocheck {

std::unique_ptr<const PortDirectory> WithReaders(std::unique_ptr<const PortDirectory> serialPorts,
                                                 std::function<bool()> servesReaders) {
  return std::make_unique<ReaderDirectory>(std::move(serialPorts), std::move(servesReaders),
                                           ctapi::host::LoadPcscApi);
}

}  // namespace kartocheck
