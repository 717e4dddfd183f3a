// The program with the window, which the program goes on as where it is not called for its console,
// or where that is to write a PDF.

#include <QCoreApplication>

#include "main/installation.h"
#include "main/outside.h"
#include "main/program.h"
#include "main/start_console.h"
#include "main/start_window.h"
#include "ui/report_pdf.h"

int main(int argc, char** argv) {
  return kartocheck::RunProgram(argc, argv, [&](const kartocheck::CommandLine& line) {
    const auto application = line.console ? kartocheck::MakeFontApplication(argc, argv)
                                          : kartocheck::MakeWindowApplication(argc, argv);
    kartocheck::Outside outside(
        line, kartocheck::ProgramDirectoryOfPart(QCoreApplication::applicationDirPath()));
    if (line.console) {
      return kartocheck::RunConsoleFrontEnd(line, outside, kartocheck::WriteReportPdf);
    }
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
