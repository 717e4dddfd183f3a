#include "host/pcsc_transport.h"

#include <utility>

#include "host/reader_link.h"
#include "host/reader_trouble.h"

namespace ctapi::host {

OpenedLink PcscTransport::Open(std::size_t index) {
  std::vector<std::string> attached;
  if (service_.List(attached) != PcscResult::Ok) return {.Code = code::HostError};
  names_.Update(std::move(attached));
  const std::string* const name = names_.AttachedAt(index);
  if (name == nullptr) return {.Code = code::InvalidParameter};
  std::optional<PortTroubleKind>& trouble = troubles_[*name];
  trouble.reset();
  return {code::Success, std::make_unique<ReaderLink>(service_, *name, trouble)};
}

PortInfo PcscTransport::InfoOf(std::size_t index) {
  std::vector<std::string> attached;
  if (lookout_.List(attached) == PcscResult::Ok) {
    names_.Update(std::move(attached));
    if (const std::string* const name = names_.At(index)) {
      const std::optional<PortTroubleKind>& told = troubles_[*name];
      if (names_.AttachedAt(index) != nullptr) {
        return {.Trouble = told ? *told : FindReaderTrouble(lookout_, *name), .Name = *name};
      }
      if (told == PortTroubleKind::ReaderGone) return {.Trouble = PortTroubleKind::ReaderGone};
    }
  }
  // A card that is held is the matter of another reader.
  const PortTroubleKind trouble = FindReaderTrouble(lookout_);
  return {.Trouble = trouble == PortTroubleKind::CardHeld ? PortTroubleKind::None : trouble};
}

PortTroubleKind PcscTransport::TroubleOfReaders() {
  return FindReaderTrouble(lookout_);
}

}  // namespace ctapi::host
