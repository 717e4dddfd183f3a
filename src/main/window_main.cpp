// The program with the window, which the program goes on as where it is not called for its console.

#include <QCoreApplication>

#include "main/installation.h"
#include "main/outside.h"
#include "main/program.h"
#include "main/start_window.h"

int main(int argc, char** argv) {
  return kartocheck::RunProgram(argc, argv, [&](const kartocheck::CommandLine& line) {
    const auto application = kartocheck::MakeWindowApplication(argc, argv);
    kartocheck::Outside outside(
        line, kartocheck::ProgramDirectoryOfPart(QCoreApplication::applicationDirPath()));
    return kartocheck::RunWindow({.api = outside.Api(),
                                  .serial = outside.Serial(),
                                  .directory = outside.Directory(),
                                  .pending = outside.Pending(),
                                  .terminate = kartocheck::TerminateNow,
                                  .schemaDirectories = outside.SchemaDirectories(),
                                  .library = [&outside] { return outside.LibraryText(); },
                                  .simulation = line.simulate.has_value()});
  });
}
