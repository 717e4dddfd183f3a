// The program that its users call. It runs the console; for the window, whose libraries take longer
// to load than a card to read, and for a report as PDF, it goes on as a program beside it.

#include <QCoreApplication>

#include <stdexcept>

#include "main/installation.h"
#include "main/program.h"
#include "main/start_console.h"
#include "platform/next_program.h"

namespace kartocheck {
namespace {

int GoOnWithFonts(const CommandLine& line, const QString& programDirectory, char** argv) {
  if (const auto status = GoOnAs(WindowProgram(programDirectory), argv)) return *status;
  throw std::runtime_error(line.console
                               ? "Diese Fassung schreibt den Prüfbericht nur als Text."
                               : "Diese Fassung hat kein Fenster; bitte mit --console aufrufen.");
}

}  // namespace
}  // namespace kartocheck

int main(int argc, char** argv) {
  return kartocheck::RunProgram(argc, argv, [&](const kartocheck::CommandLine& line) {
    const QCoreApplication application(argc, argv);
    const QString directory = QCoreApplication::applicationDirPath();
    const bool writesPdf = line.report && kartocheck::IsPdfName(*line.report);
    if (!line.console || writesPdf) return kartocheck::GoOnWithFonts(line, directory, argv);
    kartocheck::Outside outside(line, directory);
    outside.BeginLoading();
    return kartocheck::RunConsoleFrontEnd(line, outside, kartocheck::WriteReportText);
  });
}
