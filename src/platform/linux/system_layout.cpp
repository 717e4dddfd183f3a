#include "platform/system_layout.h"

namespace kartocheck {

// As the Filesystem Hierarchy Standard has it. The library of ours goes before what else is
// installed under its name; a maker's is put beside the program.
SystemLayout LayoutOfThisSystem() {
  return {.LibraryFile = u"libCTNRV32.so",
          .ProgramSuffix = u"",
          .PrivateDirectory = u"../lib/kartocheck",
          .ProgramDirectory = u"../../bin",
          .DataDirectory = u"../share/kartocheck",
          .LibraryPlaces = {LibraryPlace::ProgramDirectory, LibraryPlace::PrivateDirectory,
                            LibraryPlace::SearchPath}};
}

}  // namespace kartocheck
