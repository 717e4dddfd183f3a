#pragma once

#include "host/pcsc_service.h"
#include "host/terminal_link.h"

namespace ctapi::host {

// PC/SC readers by index. A name keeps the index that it was given first; new ones are put behind
// in sorted order.
class PcscTransport final : public Transport {
 public:
  explicit PcscTransport(std::optional<PcscApi> api) : service_(std::move(api)) {}

  [[nodiscard]] OpenedLink Open(std::size_t index) override;

 private:
  PcscService service_;
  std::vector<std::string> names_;
};

}  // namespace ctapi::host
