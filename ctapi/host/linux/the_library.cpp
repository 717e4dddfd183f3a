#include "host/the_library.h"

#include "host/transports.h"

namespace ctapi::host {

// The linker has marked the file as one that is not unloaded.
HostLibrary& TheLibrary() {
  static HostLibrary library(MakeTransports());
  return library;
}

}  // namespace ctapi::host
