#include "host/pcsc_transport.h"

#include <algorithm>

#include "host/reader_link.h"

namespace ctapi::host {

OpenedLink PcscTransport::Open(std::size_t index) {
  std::vector<std::string> attached;
  if (service_.List(attached) != PcscResult::Ok) return {.Code = code::HostError};
  std::sort(attached.begin(), attached.end());
  for (const std::string& name : attached) {
    if (std::find(names_.begin(), names_.end(), name) == names_.end()) names_.push_back(name);
  }
  if (index >= names_.size() ||
      !std::binary_search(attached.begin(), attached.end(), names_[index])) {
    return {.Code = code::InvalidParameter};
  }
  return {code::Success, std::make_unique<ReaderLink>(service_, names_[index])};
}

}  // namespace ctapi::host
