#include "host/reader_names.h"

#include <algorithm>

namespace ctapi::host {

void ReaderNames::Update(std::vector<std::string> attached) {
  attached_ = std::move(attached);
  std::sort(attached_.begin(), attached_.end());
  for (const std::string& name : attached_) {
    if (std::find(names_.begin(), names_.end(), name) == names_.end()) names_.push_back(name);
  }
}

const std::string* ReaderNames::At(std::size_t index) const {
  return index < names_.size() ? &names_[index] : nullptr;
}

const std::string* ReaderNames::AttachedAt(std::size_t index) const {
  const std::string* const name = At(index);
  const bool isAttached =
      name != nullptr && std::binary_search(attached_.begin(), attached_.end(), *name);
  return isAttached ? name : nullptr;
}

}  // namespace ctapi::host
