#pragma once

#include <QString>

#include <optional>

namespace kartocheck {

// Goes on as the program of this file, called as this one was. Where the system can put one program
// in the place of another this does not return: the process keeps its number, its streams and
// whoever waits for it. Elsewhere the exit status that the other one ended with. Nothing where it
// cannot be started.
// arguments: of this program's main, its name first; a system that keeps the command line itself
// hands that on.
[[nodiscard]] std::optional<int> GoOnAs(const QString& file, char** arguments);

}  // namespace kartocheck
