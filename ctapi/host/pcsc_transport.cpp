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
  PortTroubleKind& trouble = troubles_[*name];
  trouble = PortTroubleKind::None;
  return {code::Success, std::make_unique<ReaderLink>(service_, *name, trouble)};
}

PortInfo PcscTransport::InfoOf(std::size_t index) {
  std::vector<std::string> attached;
  if (lookout_.List(attached) == PcscResult::Ok) {
    names_.Update(std::move(attached));
    const std::string* const name = names_.At(index);
    const auto told = name == nullptr ? troubles_.end() : troubles_.find(*name);
    const PortTroubleKind trouble = told == troubles_.end() ? PortTroubleKind::None : told->second;
    if (names_.AttachedAt(index) != nullptr) {
      const bool isTold = trouble != PortTroubleKind::None;
      return {.Trouble = isTold ? trouble : FindReaderTrouble(lookout_, *name), .Name = *name};
    }
    if (trouble == PortTroubleKind::ReaderGone) return {.Trouble = trouble};
  }
  // A card that is held is the matter of another reader.
  const PortTroubleKind trouble = FindReaderTrouble(lookout_);
  return {.Trouble = trouble == PortTroubleKind::CardHeld ? PortTroubleKind::None : trouble};
}

PortTroubleKind PcscTransport::TroubleOfReaders() {
  return FindReaderTrouble(lookout_);
}

}  // namespace ctapi::host
