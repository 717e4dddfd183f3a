#pragma once

#include <map>

#include "host/pcsc_service.h"
#include "host/reader_names.h"
#include "host/terminal_link.h"

namespace ctapi::host {

// PC/SC readers by index. A reader keeps the index that it was given first, whoever asked.
class PcscTransport final : public Transport {
 public:
  explicit PcscTransport(const std::optional<PcscApi>& api,
                         std::chrono::milliseconds answerTime = PcscService::AnswerTime)
      : service_(api, answerTime), lookout_(api, answerTime) {}

  [[nodiscard]] OpenedLink Open(std::size_t index) override;
  // Its name is the reader's full one. The trouble that a call ran into goes before what the reader
  // looks like now: another program may have left the card a moment later.
  [[nodiscard]] PortInfo InfoOf(std::size_t index) override;
  [[nodiscard]] PortTroubleKind TroubleOfReaders() override;

 private:
  PcscService service_;
  // Questions have a context of their own: to renew the one of an open link would end the link.
  PcscService lookout_;
  ReaderNames names_;
  // What the last call on a reader came to, by its name, since it was opened.
  std::map<std::string, std::optional<PortTroubleKind>> troubles_;
};

}  // namespace ctapi::host
