#pragma once

#include "host/pcsc_service.h"
#include "host/reader_names.h"
#include "host/terminal_link.h"

namespace ctapi::host {

// PC/SC readers by index.
class PcscTransport final : public Transport {
 public:
  explicit PcscTransport(std::optional<PcscApi> api) : service_(std::move(api)) {}

  [[nodiscard]] OpenedLink Open(std::size_t index) override;

 private:
  PcscService service_;
  ReaderNames names_;
};

}  // namespace ctapi::host
