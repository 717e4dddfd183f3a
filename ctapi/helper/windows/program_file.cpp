#include "helper/windows/program_file.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "protocol/windows/handle.h"
#include "protocol/windows/wide_text.h"

namespace ctapi::helper {

namespace {

using Content = std::span<const std::byte>;

// A file as it lies on the disk, in memory.
class MappedFile {
 public:
  explicit MappedFile(const std::wstring& path)
      : file_(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                            nullptr, OPEN_EXISTING, 0, nullptr)) {
    LARGE_INTEGER size{};
    if (!file_.IsOpen() || !::GetFileSizeEx(file_.Get(), &size) || size.HighPart != 0) return;
    mapping_ = Handle(::CreateFileMappingW(file_.Get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    if (!mapping_.IsOpen()) return;
    view_ = ::MapViewOfFile(mapping_.Get(), FILE_MAP_READ, 0, 0, 0);
    if (view_ != nullptr) size_ = size.LowPart;
  }
  ~MappedFile() {
    if (view_ != nullptr) ::UnmapViewOfFile(view_);
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  [[nodiscard]] Content All() const { return {static_cast<const std::byte*>(view_), size_}; }

 private:
  Handle file_;
  Handle mapping_;
  void* view_ = nullptr;
  std::size_t size_ = 0;
};

// The record at a place of the file; nothing where the file ends before it does.
template <typename Record>
std::optional<Record> RecordAt(Content content, std::size_t at) {
  if (at > content.size() || content.size() - at < sizeof(Record)) return std::nullopt;
  Record record;
  std::memcpy(&record, content.data() + at, sizeof record);
  return record;
}

std::string TextAt(Content content, std::size_t at) {
  std::string text;
  for (; at < content.size() && content[at] != std::byte{0}; ++at) {
    text += static_cast<char>(content[at]);
  }
  return text;
}

// Where the headers begin; nothing where there are none.
std::optional<std::size_t> FindHeaders(Content content) {
  const auto dos = RecordAt<IMAGE_DOS_HEADER>(content, 0);
  if (!dos || dos->e_magic != IMAGE_DOS_SIGNATURE || dos->e_lfanew < 0) return std::nullopt;
  const auto at = static_cast<std::size_t>(dos->e_lfanew);
  const auto signature = RecordAt<DWORD>(content, at);
  if (!signature || *signature != IMAGE_NT_SIGNATURE) return std::nullopt;
  return at;
}

// The names of the libraries that a library of this word size needs.
std::vector<std::string> DependenciesOf(Content content) {
  std::vector<std::string> names;
  const auto at = FindHeaders(content);
  const auto headers = at ? RecordAt<IMAGE_NT_HEADERS>(content, *at) : std::nullopt;
  if (!headers) return names;
  const std::size_t sectionsAt =
      *at + offsetof(IMAGE_NT_HEADERS, OptionalHeader) + headers->FileHeader.SizeOfOptionalHeader;
  // Addresses are those of the loaded library; the sections tell where they lie in the file.
  const auto placeOf = [&](DWORD address) -> std::size_t {
    for (std::size_t i = 0; i < headers->FileHeader.NumberOfSections; ++i) {
      const auto section =
          RecordAt<IMAGE_SECTION_HEADER>(content, sectionsAt + i * sizeof(IMAGE_SECTION_HEADER));
      if (!section) break;
      const DWORD offset = address - section->VirtualAddress;
      if (address >= section->VirtualAddress && offset < section->SizeOfRawData) {
        return std::size_t{section->PointerToRawData} + offset;
      }
    }
    return content.size();
  };
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  if (table.VirtualAddress == 0) return names;
  for (std::size_t place = placeOf(table.VirtualAddress);;
       place += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
    const auto entry = RecordAt<IMAGE_IMPORT_DESCRIPTOR>(content, place);
    if (!entry || entry->Name == 0) return names;
    names.push_back(TextAt(content, placeOf(entry->Name)));
  }
}

// Names that stand for the system's libraries, of which there are no files.
bool IsNameOfASet(std::string_view name) {
  return name.starts_with("api-ms-") || name.starts_with("ext-ms-");
}

bool IsOnSearchPath(const std::wstring& name) {
  return ::SearchPathW(nullptr, name.c_str(), nullptr, 0, nullptr, nullptr) > 0;
}

std::optional<std::wstring> FindMissing(const std::wstring& file, const std::wstring& folder,
                                        std::set<std::wstring>& seen) {
  if (!seen.insert(file).second) return std::nullopt;
  const MappedFile mapped(file);
  for (const std::string& name : DependenciesOf(mapped.All())) {
    const std::wstring wide = WideText(name);
    const std::wstring beside = folder + wide;
    if (KindOf(beside) != FileKind::Missing) {
      if (auto missing = FindMissing(beside, folder, seen)) return missing;
    } else if (!IsNameOfASet(name) && !IsOnSearchPath(wide)) {
      return wide;
    }
  }
  return std::nullopt;
}

}  // namespace

FileKind KindOf(const std::wstring& file) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::Missing;
  const MappedFile mapped(file);
  const auto at = FindHeaders(mapped.All());
  const auto headers =
      at ? RecordAt<IMAGE_FILE_HEADER>(mapped.All(), *at + sizeof(DWORD)) : std::nullopt;
  if (!headers || (headers->Characteristics & IMAGE_FILE_DLL) == 0) return FileKind::NotALibrary;
  constexpr WORD OwnMachine =
      sizeof(void*) == 4 ? IMAGE_FILE_MACHINE_I386 : IMAGE_FILE_MACHINE_AMD64;
  return headers->Machine == OwnMachine ? FileKind::Library : FileKind::OfOtherWordSize;
}

std::optional<std::wstring> MissingDependencyOf(const std::wstring& file) {
  const std::wstring folder = file.substr(0, file.find_last_of(L"\\/") + 1);
  std::set<std::wstring> seen;
  return FindMissing(file, folder, seen);
}

}  // namespace ctapi::helper
