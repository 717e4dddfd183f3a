#pragma once

#include <QStringList>

namespace kartocheck {

// What this program was called with, its name first. argc, argv: of its main, which on some systems
// has lost the letters that the system's 8-bit code does not know.
[[nodiscard]] QStringList ProgramArguments(int argc, char** argv);

}  // namespace kartocheck
