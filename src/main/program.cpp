#include "main/program.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iostream>

#include "console/console_run.h"
#include "diagnosis/library_fault_text.h"
#include "platform/plain_message.h"
#include "platform/program_arguments.h"
#include "platform/standard_streams.h"
#include "protocol/private_memory.h"

namespace kartocheck {

int RunProgram(int argc, char** argv, const std::function<int(const CommandLine&)>& run) {
  ctapi::KeepMemoryPrivate();
  PrepareStandardStreams();
  QCoreApplication::setApplicationName(QStringLiteral("kartocheck"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KARTOCHECK_VERSION));

  const auto parsed = ParseCommandLine(ProgramArguments(argc, argv));
  if (const auto* text = std::get_if<CommandLineText>(&parsed)) {
    TellPlainly(text->isError ? StandardStream::Error : StandardStream::Output,
                text->text.trimmed());
    return text->isError ? exit_status::UsageOrFatal : EXIT_SUCCESS;
  }
  try {
    return run(std::get<CommandLine>(parsed));
  } catch (const std::exception& error) {
    TellPlainly(StandardStream::Error, QString::fromUtf8(error.what()));
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
