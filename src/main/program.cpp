#include "main/program.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iostream>

#include "console/console_run.h"
#include "diagnosis/library_fault_text.h"
#include "platform/standard_streams.h"
#include "protocol/private_memory.h"

namespace kartocheck {

namespace {

QStringList Arguments(int argc, char** argv) {
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  return arguments;
}

}  // namespace

int RunProgram(int argc, char** argv, const std::function<int(const CommandLine&)>& run) {
  ctapi::KeepMemoryPrivate();
  SecureStandardStreams();
  QCoreApplication::setApplicationName(QStringLiteral("kartocheck"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KARTOCHECK_VERSION));

  const auto parsed = ParseCommandLine(Arguments(argc, argv));
  if (const auto* text = std::get_if<CommandLineText>(&parsed)) {
    (text->isError ? std::cerr : std::cout) << text->text.trimmed().toStdString() << '\n';
    return text->isError ? exit_status::UsageOrFatal : EXIT_SUCCESS;
  }
  try {
    return run(std::get<CommandLine>(parsed));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return exit_status::UsageOrFatal;
  }
}

void TerminateNow(const LibraryFault& fault) {
  std::cout.flush();
  std::cerr << "KartoCheck: " << LibraryFaultText(fault).toStdString() << '\n';
  std::cerr.flush();
  std::_Exit(exit_status::UsageOrFatal);
}

}  // namespace kartocheck
