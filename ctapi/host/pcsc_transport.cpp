#include "host/pcsc_transport.h"

#include <utility>

#include "host/reader_link.h"

namespace ctapi::host {

OpenedLink PcscTransport::Open(std::size_t index) {
  std::vector<std::string> attached;
  if (service_.List(attached) != PcscResult::Ok) return {.Code = code::HostError};
  names_.Update(std::move(attached));
  const std::string* const name = names_.AttachedAt(index);
  if (name == nullptr) return {.Code = code::InvalidParameter};
  return {code::Success, std::make_unique<ReaderLink>(service_, *name)};
}

}  // namespace ctapi::host
