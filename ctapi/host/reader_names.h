#pragma once

#include <string>
#include <vector>

namespace ctapi::host {

// Which reader an index stands for. A name keeps the index that it was given first; new ones are
// put behind in sorted order.
class ReaderNames {
 public:
  // The readers that are attached now, in any order.
  void Update(std::vector<std::string> attached);

  // Null where the index was never given.
  [[nodiscard]] const std::string* At(std::size_t index) const;
  // The same, and where its reader is not attached.
  [[nodiscard]] const std::string* AttachedAt(std::size_t index) const;

 private:
  std::vector<std::string> names_;
  std::vector<std::string> attached_;  // sorted
};

}  // namespace ctapi::host
