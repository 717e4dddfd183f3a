#include "platform/system_layout.h"

namespace kartocheck {

// Everything lies in the program's folder. A maker's driver puts its library into the system's
// folder: it goes before the one of ours, which knows readers and terminals in general only.
SystemLayout LayoutOfThisSystem() {
  return {.LibraryFile = u"CTNRV32.dll",
          .ProgramSuffix = u".exe",
          .PrivateDirectory = u"lib/kartocheck",
          .ProgramDirectory = u"../..",
          .DataDirectory = u"schemas",
          .LibraryPlaces = {LibraryPlace::ProgramDirectory, LibraryPlace::SearchPath,
                            LibraryPlace::PrivateDirectory}};
}

}  // namespace kartocheck
