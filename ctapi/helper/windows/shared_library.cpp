#include "helper/shared_library.h"

#include <windows.h>

#include "helper/windows/program_file.h"
#include "protocol/windows/wide_text.h"

namespace ctapi::helper {

namespace {

constexpr DWORD LongestPath = 32'768;  // characters, the system's limit

std::wstring FullPathOf(const std::wstring& file) {
  std::wstring path(LongestPath, L'\0');
  path.resize(::GetFullPathNameW(file.c_str(), LongestPath, path.data(), nullptr));
  return path;
}

std::wstring FolderOf(const std::wstring& path) {
  return path.substr(0, path.find_last_of(L"\\/"));
}

std::wstring InSystemFolder(const std::wstring& name) {
  std::wstring folder(LongestPath, L'\0');
  folder.resize(::GetSystemDirectoryW(folder.data(), LongestPath));
  return folder + L'\\' + name;
}

std::string FileOf(HMODULE library) {
  std::wstring path(LongestPath, L'\0');
  path.resize(::GetModuleFileNameW(library, path.data(), LongestPath));
  return Utf8Text(path);
}

// The system's own words, in its language.
std::string TextOf(DWORD error) {
  constexpr DWORD Longest = 1024;
  std::wstring text(Longest, L'\0');
  text.resize(::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                               error, 0, text.data(), Longest, nullptr));
  while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r' || text.back() == L' ')) {
    text.pop_back();
  }
  return text.empty() ? "Windows " + std::to_string(error) : Utf8Text(text);
}

// path: where a file of this name would stand.
LoadFailure FailureOf(DWORD error, const std::wstring& path, const std::string& file) {
  switch (KindOf(path)) {
    case FileKind::Missing:
      return {LoadTrouble::FileMissing, file};
    case FileKind::NotALibrary:
      return {LoadTrouble::NotALibrary, file};
    case FileKind::OfOtherWordSize:
      return {LoadTrouble::WrongWordSize, file};
    case FileKind::Library:
      break;
  }
  if (error == ERROR_MOD_NOT_FOUND) {
    if (const auto missing = MissingDependencyOf(path)) {
      return {LoadTrouble::DependencyMissing, Utf8Text(*missing)};
    }
  }
  return {LoadTrouble::Other, TextOf(error)};
}

HMODULE Load(const std::string& file) {
  const bool isBare = IsBareName(file);
  const std::wstring wide = WideText(file);
  const std::wstring path = isBare ? InSystemFolder(wide) : FullPathOf(wide);
  // What the library itself loads, now or later, is looked for beside it, too. Any choice here
  // takes away the folder that the program was started in, which belongs to nobody.
  ::SetDllDirectoryW(isBare ? L"" : FolderOf(path).c_str());
  const HMODULE library =
      isBare ? ::LoadLibraryExW(wide.c_str(), nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)
             : ::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library == nullptr) throw FailureOf(::GetLastError(), path, file);
  return library;
}

}  // namespace

bool IsBareName(const std::string& file) {
  return file.find_first_of("/\\:") == std::string::npos;
}

SharedLibrary::SharedLibrary(const std::string& file)
    : handle_(Load(file)), file_(FileOf(static_cast<HMODULE>(handle_))) {}

// Compilers mark functions of the system's calling convention by the number of bytes that they take
// from the stack, a multiple of four: name@8 or _name@8. An entry point of a CT-API takes 28 at the
// most.
void* SharedLibrary::Resolve(const char* name) const {
  const auto find = [this](const std::string& exported) {
    return reinterpret_cast<void*>(
        ::GetProcAddress(static_cast<HMODULE>(handle_), exported.c_str()));
  };
  if (void* const plain = find(name)) return plain;
  constexpr int MostBytes = 64;
  for (int bytes = 0; bytes <= MostBytes; bytes += 4) {
    const std::string marked = name + ('@' + std::to_string(bytes));
    if (void* const found = find(marked)) return found;
    if (void* const found = find('_' + marked)) return found;
  }
  return nullptr;
}

}  // namespace ctapi::helper
