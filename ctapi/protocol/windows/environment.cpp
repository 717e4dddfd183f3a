#include "protocol/environment.h"

#include <windows.h>

#include "protocol/windows/wide_text.h"

namespace ctapi {

// The C library's is in the code page of the system, which does not hold every path.
std::optional<std::string> EnvironmentText(const char* name) {
  constexpr DWORD Longest = 32'768;  // characters, the system's limit
  std::wstring text(Longest, L'\0');
  ::SetLastError(ERROR_SUCCESS);
  text.resize(::GetEnvironmentVariableW(WideText(name).c_str(), text.data(), Longest));
  if (text.empty() && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
  return Utf8Text(text);
}

}  // namespace ctapi
