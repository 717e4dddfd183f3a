#pragma once

#include <QStringView>

#include <array>

namespace kartocheck {

// Where a CT-API library may lie that no user has named.
enum class LibraryPlace { ProgramDirectory, PrivateDirectory, SearchPath };

// How the program's files are called and where they lie, by the customs of this operating system.
struct SystemLayout {
  QStringView LibraryFile;    // the file name of CTNRV32
  QStringView ProgramSuffix;  // of the file names of programs

  // Where parts of the program are installed that nobody else calls, seen from the program's
  // directory, and how that one is seen from there.
  QStringView PrivateDirectory;
  QStringView ProgramDirectory;

  // Where data files are installed that do not lie in the program's directory, seen from there.
  QStringView DataDirectory;

  std::array<LibraryPlace, 3> LibraryPlaces;  // in the order in which they are looked into
};

[[nodiscard]] SystemLayout LayoutOfThisSystem();

}  // namespace kartocheck
