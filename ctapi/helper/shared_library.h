#pragma once

#include <string>

#include "helper/message.h"

// Loading a library of the system's kind.
namespace ctapi::helper {

struct LoadFailure {
  LoadTrouble Trouble = LoadTrouble::Other;
  std::string Detail{};  // the file that the trouble is with, for Other the system's words
};

// Whether the name is looked for by the system, rather than being a path.
[[nodiscard]] bool IsBareName(const std::string& file);

// A library that stays loaded until the process ends: foreign libraries have threads and static
// data of their own, and taking them down again gains nothing.
class SharedLibrary {
 public:
  // A path, or a bare file name, which is looked for on the system's search path and nowhere else;
  // on Windows, whose search path everybody may lengthen, in the system's folder alone. UTF-8.
  // Throws LoadFailure.
  explicit SharedLibrary(const std::string& file);

  // Where the file stands.
  [[nodiscard]] const std::string& File() const { return file_; }

  // The address of an exported function; null where there is none of this name, nor, on Windows, of
  // this name with the marks of the calling convention.
  [[nodiscard]] void* Resolve(const char* name) const;

 private:
  void* handle_;
  std::string file_;
};

}  // namespace ctapi::helper
