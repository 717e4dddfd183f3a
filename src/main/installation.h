#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kartocheck {

// Where the program's parts lie, seen from the directory of the program file.

// The program that loads the CT-API library: beside this one where it was built, in the private
// library directory where it is installed.
[[nodiscard]] QString HelperProgram(const QString& programDirectory);

// Where the CT-API library is looked for, in this order: the program's directory, its private
// library directory, the system's search path.
[[nodiscard]] QStringList CtApiCandidates(const QString& programDirectory, QStringView fileName);

// Directories of data files: the program's own, then the installed data directory.
[[nodiscard]] QStringList DataDirectories(const QString& programDirectory);

// The scenario file that a name or a path stands for; nothing where there is none.
[[nodiscard]] std::optional<QString> ScenarioFile(const QString& programDirectory,
                                                  const QString& nameOrPath);

}  // namespace kartocheck
