#pragma once

#include <optional>
#include <string>

// What a file of the system's format for programs and libraries (PE) tells of itself, without being
// loaded.
namespace ctapi::helper {

enum class FileKind {
  Missing,
  NotALibrary,
  OfOtherWordSize,
  Library,  // of the word size of this process
};

[[nodiscard]] FileKind KindOf(const std::wstring& file);

// The first library that the file needs and that is neither beside it nor on the system's search
// path, or the first that such a one beside it needs. Nothing where all are there.
[[nodiscard]] std::optional<std::wstring> MissingDependencyOf(const std::wstring& file);

}  // namespace ctapi::helper
