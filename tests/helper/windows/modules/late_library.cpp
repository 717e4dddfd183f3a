// A library that loads another one by its bare name, when it is first called.

#include <windows.h>

extern "C" __declspec(dllexport) int LoadsItsPart() {
  return ::LoadLibraryW(L"part-of-it.dll") != nullptr ? 1 : 0;
}
