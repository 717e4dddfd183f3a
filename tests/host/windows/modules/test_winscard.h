#pragma once

#include <windows.h>

#include <winscard.h>

namespace ctapi::host::test {

// What the test's own winscard.dll plays, and what it was told. One reader; plain data, since the
// library has another C++ library than the test.
struct TestService {
  LONG Established = SCARD_S_SUCCESS;
  LONG Listed = SCARD_S_SUCCESS;
  LONG Connected = SCARD_S_SUCCESS;
  LONG Transmitted = SCARD_S_SUCCESS;
  LONG StateAsked = SCARD_S_SUCCESS;
  bool HasReader = true;
  bool HasCard = true;
  WORD Events = 1;  // how often a card came or went

  int Contexts = 0;  // open
  int Connections = 0;
  DWORD LastShareMode = 0;
  DWORD LastDisposition = 0;
  DWORD LastLengthOfPci = 0;
  DWORD LastTimeout = 0;
};

inline constexpr const wchar_t* TestReader = L"Lesger\u00E4t Pr\u00FCf 0";
inline constexpr BYTE TestAtr[] = {0x3B, 0x80, 0x80, 0x01, 0x01};

using TestServiceFunction = TestService*(WINAPI*)();

}  // namespace ctapi::host::test
