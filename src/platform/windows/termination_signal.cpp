#include "platform/termination_signal.h"

#include <windows.h>

#include <atomic>
#include <stdexcept>
#include <utility>

namespace kartocheck {

namespace {

// NTSTATUS STATUS_CONTROL_C_EXIT: what the system ends a program with that does not listen.
constexpr UINT EndedByRequest = 0xC000013A;

// The system calls the handler of a console on a thread of its own; the window carries the request
// over to the event loop.
std::atomic<HWND> receiver{nullptr};
std::atomic<int> requests{0};

BOOL WINAPI TakeRequest(DWORD request) {
  const HWND window = receiver;
  if (window == nullptr) return FALSE;
  // Whoever asks twice does not want to wait any longer.
  if (requests.fetch_add(1) > 0) ::TerminateProcess(::GetCurrentProcess(), EndedByRequest);
  ::PostMessageW(window, WM_CLOSE, 0, 0);
  // The system ends the program as soon as it has been told that a console was closed; some seconds
  // are left to end by itself.
  if (request != CTRL_C_EVENT && request != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
  return TRUE;
}

}  // namespace

// A window that nobody sees: the end of a session, and the polite request of other programs to end,
// are told to windows only.
class TerminationSignal::Watcher {
 public:
  explicit Watcher(std::function<void()> onRequest)
      : onRequest_(std::move(onRequest)), window_(MakeWindow()) {
    if (window_ == nullptr) throw std::runtime_error("no window for requests to end");
    ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    requests = 0;
    receiver = window_;
    ::SetConsoleCtrlHandler(&TakeRequest, TRUE);
  }

  ~Watcher() {
    ::SetConsoleCtrlHandler(&TakeRequest, FALSE);
    receiver = nullptr;
    ::DestroyWindow(window_);
  }

  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

 private:
  static constexpr const wchar_t* ClassName = L"KartoCheckTerminationSignal";

  static HWND MakeWindow() {
    WNDCLASSW kind{};
    kind.lpfnWndProc = &Receive;
    kind.hInstance = ::GetModuleHandleW(nullptr);
    kind.lpszClassName = ClassName;
    // Fails where there was a watcher before.
    ::RegisterClassW(&kind);
    // One that is for messages only is not told of the session's end; where there is no desktop for
    // another one, there is no such end.
    const HWND window = MakeWindowIn(nullptr);
    return window != nullptr ? window : MakeWindowIn(HWND_MESSAGE);
  }

  static HWND MakeWindowIn(HWND parent) {
    return ::CreateWindowExW(0, ClassName, L"KartoCheck", 0, 0, 0, 0, 0, parent, nullptr,
                             ::GetModuleHandleW(nullptr), nullptr);
  }

  static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* const watcher = reinterpret_cast<Watcher*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    // The session may go on where another program does not want to end; only its end counts.
    const bool isRequest = message == WM_CLOSE || (message == WM_ENDSESSION && first != FALSE);
    if (!isRequest || watcher == nullptr) {
      return ::DefWindowProcW(window, message, first, second);
    }
    if (!std::exchange(watcher->isTold_, true)) watcher->onRequest_();
    return 0;
  }

  std::function<void()> onRequest_;
  HWND window_;
  bool isTold_ = false;
};

TerminationSignal::TerminationSignal(std::function<void()> onRequest)
    : watcher_(std::make_unique<Watcher>(std::move(onRequest))) {}

TerminationSignal::~TerminationSignal() = default;

}  // namespace kartocheck
