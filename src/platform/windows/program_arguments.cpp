#include "platform/program_arguments.h"

#include <windows.h>

// Needs the types of windows.h.
#include <shellapi.h>

#include "platform/windows/local_memory.h"

namespace kartocheck {

QStringList ProgramArguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  const LocalMemory<wchar_t*> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
  QStringList arguments;
  for (int i = 0; words != nullptr && i < count; ++i) {
    arguments.append(QString::fromWCharArray(words.get()[i]));
  }
  return arguments;
}

}  // namespace kartocheck
