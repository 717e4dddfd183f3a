#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// What a test asks of the operating system, and what it expects of it.
namespace kartocheck::test {

// What ends a process that writes where no memory is: its number, as QProcess tells it, and its
// name.
[[nodiscard]] int MemoryFault();
[[nodiscard]] QString NameOfMemoryFault();

// What the program calls the crash number 4711, which is none.
[[nodiscard]] QString NameOfUnknownCrash();

// The platform plugin of Qt on which tests of windows run; empty for the one of every program.
[[nodiscard]] QByteArray PlatformOfTests();

// What Qt's platform plugin there has to say about itself, by how it begins.
[[nodiscard]] QStringList HarmlessWarnings();

// The formats beside a text in the clipboard by which the programs that keep its history know that
// they are to leave it out.
[[nodiscard]] QStringList ClipboardSecretFormats();

// A program of the system.
struct ForeignProgram {
  QString file;
  QStringList arguments;
};

// Writes the text to its standard output, and ends.
[[nodiscard]] ForeignProgram ProgramThatSays(const QString& text);
// Ends at once.
[[nodiscard]] ForeignProgram SilentProgram();

// Asks this program to end, as the system does at the end of a session.
void AskToEnd();

}  // namespace kartocheck::test
