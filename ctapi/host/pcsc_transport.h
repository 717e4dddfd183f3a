#pragma once

#include "host/pcsc_service.h"
#include "host/reader_names.h"
#include "host/terminal_link.h"

namespace ctapi::host {

// PC/SC readers by index. A reader keeps the index that it was given first, whoever asked.
class PcscTransport final : public Transport {
 public:
  explicit PcscTransport(const std::optional<PcscApi>& api) : service_(api), lookout_(api) {}

  [[nodiscard]] OpenedLink Open(std::size_t index) override;
  // Its name is the reader's full one.
  [[nodiscard]] PortInfo InfoOf(std::size_t index) override;
  [[nodiscard]] PortTroubleKind TroubleOfReaders() override;

 private:
  PcscService service_;
  // Questions have a context of their own: to renew the one of an open link would end the link.
  PcscService lookout_;
  ReaderNames names_;
};

}  // namespace ctapi::host
