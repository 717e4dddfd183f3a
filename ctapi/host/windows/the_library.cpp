#include "host/the_library.h"

#include <windows.h>

#include "host/transports.h"

namespace ctapi::host {

namespace {

void StayLoaded() {
  HMODULE self = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(&StayLoaded), &self);
}

HostLibrary& MakeLibrary() {
  StayLoaded();
  return *std::make_unique<HostLibrary>(MakeTransports()).release();
}

}  // namespace

// Never taken down: at the end of a process the system ends its threads before it tells the
// libraries, and to close a reader would be to wait for one of them. What is open the system
// closes.
HostLibrary& TheLibrary() {
  static HostLibrary& library = MakeLibrary();
  return library;
}

}  // namespace ctapi::host
