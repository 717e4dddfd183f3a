#pragma once

#include <QString>

// What a test asks of the operating system, and what it expects of it.
namespace kartocheck::test {

// What ends a process that writes where no memory is: its number, as QProcess tells it, and its
// name.
[[nodiscard]] int MemoryFault();
[[nodiscard]] QString NameOfMemoryFault();

// What the program calls the crash number 4711, which is none.
[[nodiscard]] QString NameOfUnknownCrash();

// Asks this program to end, as the system does at the end of a session.
void AskToEnd();

}  // namespace kartocheck::test
