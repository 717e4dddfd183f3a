// A winscard.dll without a service behind it: it does what the documentation of Windows says of
// each function, with the reader and the card that the test sets.

#include "host/windows/modules/test_winscard.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>

namespace {

using ctapi::host::test::TestAtr;
using ctapi::host::test::TestReader;
using ctapi::host::test::TestService;

TestService service;

constexpr SCARDCONTEXT Context = 0xC0000001;
constexpr SCARDHANDLE Card = 0xEA000001;

bool IsTheReader(const wchar_t* name) {
  return service.HasReader && std::wcscmp(name, TestReader) == 0;
}

// Where an answer does not fit, the length that is needed is told, and nothing written.
template <typename Unit>
LONG Give(const Unit* data, DWORD size, Unit* into, DWORD* room) {
  const DWORD offered = *room;
  *room = size;
  if (into == nullptr) return SCARD_S_SUCCESS;
  if (offered < size) return SCARD_E_INSUFFICIENT_BUFFER;
  std::copy(data, data + size, into);
  return SCARD_S_SUCCESS;
}

}  // namespace

extern "C" {

__declspec(dllexport) TestService* WINAPI TheTestService() {
  return &service;
}

__declspec(dllexport) LONG WINAPI SCardEstablishContext(DWORD scope, LPCVOID first, LPCVOID second,
                                                        LPSCARDCONTEXT context) {
  if (scope != SCARD_SCOPE_SYSTEM || first != nullptr || second != nullptr) {
    return SCARD_E_INVALID_PARAMETER;
  }
  if (service.Established != SCARD_S_SUCCESS) return service.Established;
  ++service.Contexts;
  *context = Context;
  return SCARD_S_SUCCESS;
}

__declspec(dllexport) LONG WINAPI SCardReleaseContext(SCARDCONTEXT context) {
  if (context != Context) return ERROR_INVALID_HANDLE;
  --service.Contexts;
  return SCARD_S_SUCCESS;
}

__declspec(dllexport) LONG WINAPI SCardListReadersW(SCARDCONTEXT context, LPCWSTR groups,
                                                    LPWSTR names, LPDWORD length) {
  if (context != Context) return ERROR_INVALID_HANDLE;
  if (groups != nullptr) return SCARD_E_INVALID_PARAMETER;
  if (service.Listed != SCARD_S_SUCCESS) return service.Listed;
  if (!service.HasReader) return SCARD_E_NO_READERS_AVAILABLE;
  wchar_t all[64]{};
  std::wcscpy(all, TestReader);
  return Give(all, static_cast<DWORD>(std::wcslen(TestReader) + 2), names, length);
}

__declspec(dllexport) LONG WINAPI SCardGetStatusChangeW(SCARDCONTEXT context, DWORD timeout,
                                                        LPSCARD_READERSTATEW states, DWORD count) {
  if (context != Context) return ERROR_INVALID_HANDLE;
  if (count != 1) return SCARD_E_INVALID_PARAMETER;
  service.LastTimeout = timeout;
  if (service.StateAsked != SCARD_S_SUCCESS) return service.StateAsked;
  SCARD_READERSTATEW& state = *states;
  const DWORD known = state.dwCurrentState & ~DWORD{SCARD_STATE_CHANGED};
  if (!IsTheReader(state.szReader)) {
    state.dwEventState = SCARD_STATE_UNKNOWN | SCARD_STATE_CHANGED | SCARD_STATE_IGNORE;
    return SCARD_S_SUCCESS;
  }
  DWORD now = static_cast<DWORD>(service.Events) << 16;
  now |= service.HasCard ? SCARD_STATE_PRESENT : SCARD_STATE_EMPTY;
  if (service.Connections > 0) now |= SCARD_STATE_EXCLUSIVE | SCARD_STATE_INUSE;
  state.cbAtr = service.HasCard ? sizeof TestAtr : 0;
  std::copy(std::begin(TestAtr), std::end(TestAtr), state.rgbAtr);
  state.dwEventState = now;
  if (now == known) {
    ::Sleep(timeout);
    return SCARD_E_TIMEOUT;
  }
  state.dwEventState |= SCARD_STATE_CHANGED;
  return SCARD_S_SUCCESS;
}

__declspec(dllexport) LONG WINAPI SCardConnectW(SCARDCONTEXT context, LPCWSTR reader, DWORD mode,
                                                DWORD protocols, LPSCARDHANDLE card,
                                                LPDWORD protocol) {
  if (context != Context) return ERROR_INVALID_HANDLE;
  if (!IsTheReader(reader)) return SCARD_E_UNKNOWN_READER;
  if (service.Connected != SCARD_S_SUCCESS) return service.Connected;
  const bool isDirect = mode == SCARD_SHARE_DIRECT;
  if (!isDirect && !service.HasCard) return static_cast<LONG>(SCARD_W_REMOVED_CARD);
  if (!isDirect && (protocols & SCARD_PROTOCOL_T1) == 0) return SCARD_E_PROTO_MISMATCH;
  ++service.Connections;
  service.LastShareMode = mode;
  *card = Card;
  *protocol = isDirect ? SCARD_PROTOCOL_UNDEFINED : SCARD_PROTOCOL_T1;
  return SCARD_S_SUCCESS;
}

__declspec(dllexport) LONG WINAPI SCardDisconnect(SCARDHANDLE card, DWORD disposition) {
  if (card != Card) return ERROR_INVALID_HANDLE;
  --service.Connections;
  service.LastDisposition = disposition;
  return SCARD_S_SUCCESS;
}

// The card answers every command with its own bytes and the status word 90 00.
__declspec(dllexport) LONG WINAPI SCardTransmit(SCARDHANDLE card, LPCSCARD_IO_REQUEST pci,
                                                LPCBYTE command, DWORD size,
                                                LPSCARD_IO_REQUEST answersPci, LPBYTE answer,
                                                LPDWORD length) {
  if (card != Card) return ERROR_INVALID_HANDLE;
  if (pci == nullptr || pci->dwProtocol != SCARD_PROTOCOL_T1) return SCARD_E_INVALID_PARAMETER;
  service.LastLengthOfPci = pci->cbPciLength;
  if (answersPci != nullptr && answersPci->cbPciLength < sizeof *answersPci) {
    return SCARD_E_PCI_TOO_SMALL;
  }
  if (service.Transmitted != SCARD_S_SUCCESS) return service.Transmitted;
  BYTE all[300]{};
  std::copy(command, command + size, all);
  all[size] = 0x90;
  return Give<BYTE>(all, size + 2, answer, length);
}

__declspec(dllexport) LONG WINAPI SCardGetAttrib(SCARDHANDLE card, DWORD attribute, LPBYTE value,
                                                 LPDWORD length) {
  if (card != Card) return ERROR_INVALID_HANDLE;
  if (attribute != SCARD_ATTR_VENDOR_IFD_VERSION) return ERROR_NOT_SUPPORTED;
  constexpr BYTE Version[] = {0x02, 0x00, 0x05, 0x01};
  return Give(Version, sizeof Version, value, length);
}
}
