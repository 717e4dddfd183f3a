#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kartocheck {

// Where the program's parts lie, seen from the program's directory: that of the file which its
// users call.

// The program's directory, for a part of the program that may be installed in its private library
// directory: seen from the directory where that part lies.
[[nodiscard]] QString ProgramDirectoryOfPart(const QString& directoryOfPart);

// The program that loads the CT-API library: beside this one where it was built, in the private
// library directory where it is installed.
[[nodiscard]] QString HelperProgram(const QString& programDirectory);

// The program with the window, in the same places. There may be none.
[[nodiscard]] QString WindowProgram(const QString& programDirectory);

// The CT-API library that a user names. A bare name is that of a file in the current directory; the
// system's search path has its turn where there is none.
[[nodiscard]] QString NamedLibrary(const QString& name);

// Where the CT-API library is looked for, in the order of the system's custom: the program's
// directory first, then its private library directory and the system's search path.
[[nodiscard]] QStringList CtApiCandidates(const QString& programDirectory);

// Directories of data files: the program's own, then the installed data directory.
[[nodiscard]] QStringList DataDirectories(const QString& programDirectory);

// The scenario file that a name or a path stands for; nothing where there is none.
[[nodiscard]] std::optional<QString> ScenarioFile(const QString& programDirectory,
                                                  const QString& nameOrPath);

}  // namespace kartocheck
