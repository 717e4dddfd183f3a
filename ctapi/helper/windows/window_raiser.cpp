#include "helper/windows/window_raiser.h"

#include <windows.h>

namespace ctapi::helper {

namespace {

bool WantsTheUser(HWND window) {
  if (::GetAncestor(window, GA_ROOT) != window || !::IsWindowVisible(window)) return false;
  constexpr LONG_PTR Aside = WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW | WS_EX_TRANSPARENT;
  return (::GetWindowLongPtrW(window, GWL_EXSTYLE) & Aside) == 0;
}

void CALLBACK OnShown(HWINEVENTHOOK /*hook*/, DWORD /*event*/, HWND window, LONG object,
                      LONG /*child*/, DWORD /*thread*/, DWORD /*time*/) {
  if (object == OBJID_WINDOW && WantsTheUser(window)) ::SetForegroundWindow(window);
}

// In a thread of its own: the one that calls the library serves no messages meanwhile.
DWORD WINAPI Watch(void* /*data*/) {
  const HWINEVENTHOOK hook =
      ::SetWinEventHook(EVENT_OBJECT_SHOW, EVENT_OBJECT_SHOW, nullptr, &OnShown,
                        ::GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
  if (hook == nullptr) return 0;
  MSG message{};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
  ::UnhookWinEvent(hook);
  return 0;
}

}  // namespace

void RaiseNewWindows() {
  if (const HANDLE thread = ::CreateThread(nullptr, 0, &Watch, nullptr, 0, nullptr)) {
    ::CloseHandle(thread);
  }
}

}  // namespace ctapi::helper
