#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "host/pcsc_service.h"
#include "host/reader_names.h"
#include "platform/port_directory.h"

namespace kartocheck {

// What the machine knows of its PC/SC readers, which ctapi/host offers as USB devices from port
// number 8192 on, beside what another directory knows of the serial ports.
class ReaderDirectory final : public PortDirectory {
 public:
  using LoadPcsc = std::function<std::optional<ctapi::host::PcscApi>()>;

  // servesReaders: whether the USB devices of the CT-API library in use are these readers. Neither
  // it nor loadPcsc is asked before the first question about a reader.
  ReaderDirectory(std::unique_ptr<const PortDirectory> serialPorts,
                  std::function<bool()> servesReaders, LoadPcsc loadPcsc);
  ~ReaderDirectory() override;

  // Full name of the reader.
  [[nodiscard]] QString IdentificationOf(int pn) const override;
  [[nodiscard]] QString HintFor(int pn) const override;
  [[nodiscard]] QStringList HintsWithoutReader() const override;

 private:
  [[nodiscard]] ctapi::host::PcscService& Service() const;
  [[nodiscard]] const std::string* ReaderAt(int pn) const;

  std::unique_ptr<const PortDirectory> serialPorts_;
  std::function<bool()> servesReaders_;
  LoadPcsc loadPcsc_;
  // Known only as far as the service was asked.
  mutable std::optional<ctapi::host::PcscService> service_;
  mutable ctapi::host::ReaderNames names_;
};

}  // namespace kartocheck
