#include "helper/shared_library.h"

#include <dlfcn.h>
#include <link.h>
#include <string_view>

namespace ctapi::helper {

namespace {

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// What the dynamic loader says begins with the file that it speaks of, and a colon. Without a
// locale set its words are English.
LoadFailure FailureOf(const std::string& file) {
  const char* const error = ::dlerror();
  const std::string text = error == nullptr ? std::string() : error;
  const std::string subject = text.substr(0, text.find(": "));
  if (Contains(text, "wrong ELF class")) return {LoadTrouble::WrongWordSize, subject};
  if (Contains(text, "invalid ELF header") || Contains(text, "file too short") ||
      Contains(text, "Is a directory")) {
    return {LoadTrouble::NotALibrary, subject};
  }
  if (Contains(text, "cannot open shared object file: No such file")) {
    return {subject == file ? LoadTrouble::FileMissing : LoadTrouble::DependencyMissing, subject};
  }
  return {LoadTrouble::Other, text};
}

std::string FileOf(void* handle, const std::string& file) {
  const link_map* map = nullptr;
  const bool isKnown = ::dlinfo(handle, RTLD_DI_LINKMAP, static_cast<void*>(&map)) == 0;
  return isKnown && map->l_name[0] != '\0' ? map->l_name : file;
}

}  // namespace

bool IsBareName(const std::string& file) {
  return file.find('/') == std::string::npos;
}

// Everything is resolved now: a function that is missing is told here, instead of ending the
// process in the middle of a call.
SharedLibrary::SharedLibrary(const std::string& file)
    : handle_(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE)) {
  if (handle_ == nullptr) throw FailureOf(file);
  file_ = FileOf(handle_, file);
}

void* SharedLibrary::Resolve(const char* name) const {
  return ::dlsym(handle_, name);
}

}  // namespace ctapi::helper
