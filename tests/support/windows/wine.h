#pragma once

#include <windows.h>

namespace kartocheck::test {

// Whether Wine plays Windows, which does without some of its guards.
[[nodiscard]] inline bool IsWine() {
  return ::GetProcAddress(::GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr;
}

}  // namespace kartocheck::test
