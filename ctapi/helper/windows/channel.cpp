#include "helper/channel.h"

#include <windows.h>

#include <deque>
#include <fcntl.h>
#include <io.h>
#include <limits>
#include <mutex>
#include <thread>

#include "protocol/windows/handle.h"

namespace ctapi::helper {

namespace {

// Away from the standard handles, and not left to programs that the library starts.
Handle MoveAway(DWORD standard) {
  HANDLE moved = nullptr;
  const HANDLE self = ::GetCurrentProcess();
  constexpr BOOL NotInherited = FALSE;
  if (!::DuplicateHandle(self, ::GetStdHandle(standard), self, &moved, 0, NotInherited,
                         DUPLICATE_SAME_ACCESS)) {
    return {};
  }
  return Handle(moved);
}

// Those of the system and those of the C library, which go apart in a program with windows.
void LeadStandardStreamsNowhere() {
  const int nowhere = ::_wopen(L"NUL", _O_RDWR | _O_BINARY);
  for (const int descriptor : {0, 1}) (void)::_dup2(nowhere, descriptor);
  (void)::_close(nowhere);
  ::SetStdHandle(STD_INPUT_HANDLE, reinterpret_cast<HANDLE>(::_get_osfhandle(0)));
  ::SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(::_get_osfhandle(1)));
}

bool ReadTo(HANDLE input, Bytes& bytes, std::size_t length) {
  const std::size_t before = bytes.size();
  bytes.resize(before + length);
  DWORD count = 0;
  if (!::ReadFile(input, bytes.data() + before, static_cast<DWORD>(length), &count, nullptr)) {
    count = 0;
  }
  bytes.resize(before + count);
  return count > 0;
}

// Takes the calls from the pipe in a thread of its own: a wait for a pipe and one for the messages
// to windows do not go together.
class CallReader {
 public:
  explicit CallReader(Handle input)
      : input_(std::move(input)),
        arrived_(::CreateSemaphoreW(nullptr, 0, std::numeric_limits<LONG>::max(), nullptr)) {}

  // Reads until the pipe is closed, or no message comes out of it. Does not return: the process
  // ends then, and what a thread does at its own end would meet what the process takes down.
  [[noreturn]] void Run() {
    for (bool isOpen = true; isOpen;) {
      Bytes bytes;
      while (const std::size_t missing = isOpen ? MissingBytes(bytes) : 0) {
        isOpen = ReadTo(input_.Get(), bytes, missing);
      }
      std::optional<Message> call = isOpen ? Decode(bytes) : std::nullopt;
      isOpen = call.has_value();
      {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
      }
      ::ReleaseSemaphore(arrived_.Get(), 1, nullptr);
    }
    for (;;) ::Sleep(INFINITE);
  }

  // Signalled once for each Take.
  [[nodiscard]] HANDLE Arrived() const { return arrived_.Get(); }

  [[nodiscard]] std::optional<Message> Take() {
    const std::lock_guard lock(mutex_);
    if (calls_.empty()) return std::nullopt;
    std::optional<Message> call = std::move(calls_.front());
    calls_.pop_front();
    return call;
  }

 private:
  Handle input_;
  Handle arrived_;
  std::mutex mutex_;
  std::deque<std::optional<Message>> calls_;  // the last one is nothing
};

void ServeWindows() {
  MSG message{};
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    // Whoever asks the thread to end does not know that the program decides that.
    if (message.message == WM_QUIT) continue;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
}

}  // namespace

struct Channel::Ends {
  Handle Output = MoveAway(STD_OUTPUT_HANDLE);
  std::shared_ptr<CallReader> Calls = std::make_shared<CallReader>(MoveAway(STD_INPUT_HANDLE));
  bool IsOver = false;
};

Channel::Channel() : ends_(std::make_unique<Ends>()) {
  LeadStandardStreamsNowhere();
  // It may wait for the pipe until the process ends.
  std::thread([calls = ends_->Calls] { calls->Run(); }).detach();
}

Channel::~Channel() = default;

std::optional<Message> Channel::Receive() {
  while (!ends_->IsOver) {
    const HANDLE arrived = ends_->Calls->Arrived();
    const DWORD reason =
        ::MsgWaitForMultipleObjectsEx(1, &arrived, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (reason == WAIT_OBJECT_0 + 1) {
      ServeWindows();
      continue;
    }
    std::optional<Message> call = reason == WAIT_OBJECT_0 ? ends_->Calls->Take() : std::nullopt;
    ends_->IsOver = !call;
    return call;
  }
  return std::nullopt;
}

bool Channel::Send(const Message& message) {
  const Bytes bytes = Encode(message);
  ByteView rest(bytes);
  while (!rest.empty()) {
    DWORD count = 0;
    if (!::WriteFile(ends_->Output.Get(), rest.data(), static_cast<DWORD>(rest.size()), &count,
                     nullptr)) {
      return false;
    }
    rest = rest.subspan(count);
  }
  return true;
}

}  // namespace ctapi::helper
