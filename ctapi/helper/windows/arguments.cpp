#include "helper/arguments.h"

#include <windows.h>

#include <shellapi.h>

#include "protocol/windows/wide_text.h"

namespace ctapi::helper {

// main's are in the code page of the system, which does not hold every path.
std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const all = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8Text(all[i]));
  ::LocalFree(all);
  return arguments;
}

}  // namespace ctapi::helper
