#include "helper/windows/helper_session.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include "protocol/windows/wide_text.h"

namespace ctapi::helper::test {

namespace {

struct Pipe {
  Handle Reading;
  Handle Writing;
};

Pipe MakePipe() {
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  if (!::CreatePipe(&reading, &writing, nullptr, 0)) throw std::runtime_error("no pipe");
  return {Handle(reading), Handle(writing)};
}

void LetInherit(const Handle& handle) {
  ::SetHandleInformation(handle.Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

}  // namespace

HelperSession::HelperSession(const std::vector<std::string>& candidates) {
  Pipe input = MakePipe();
  Pipe output = MakePipe();
  LetInherit(input.Reading);
  LetInherit(output.Writing);
  std::wstring line = WideText(std::string("\"") + KARTOCHECK_HELPER + '"');
  for (const std::string& candidate : candidates) line += WideText(" \"" + candidate + '"');
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = input.Reading.Get();
  start.hStdOutput = output.Writing.Get();
  start.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process{};
  if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &process)) {
    throw std::runtime_error("the helper does not start");
  }
  process_ = Handle(process.hProcess);
  const Handle thread(process.hThread);
  input_ = std::move(input.Writing);
  output_ = std::move(output.Reading);
}

HelperSession::~HelperSession() {
  CloseChannel();
  if (!ExitCode()) ::TerminateProcess(process_.Get(), 1);
}

void HelperSession::Send(const Message& call) const {
  const Bytes bytes = Encode(call);
  DWORD count = 0;
  ::WriteFile(input_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
}

std::optional<Message> HelperSession::Receive() {
  Bytes bytes;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (const std::size_t missing = MissingBytes(bytes)) {
    DWORD waiting = 0;
    if (!::PeekNamedPipe(output_.Get(), nullptr, 0, nullptr, &waiting, nullptr)) return {};
    if (waiting == 0) {
      if (std::chrono::steady_clock::now() > end) return {};
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      continue;
    }
    const std::size_t before = bytes.size();
    bytes.resize(before + missing);
    DWORD count = 0;
    if (!::ReadFile(output_.Get(), bytes.data() + before, static_cast<DWORD>(missing), &count,
                    nullptr)) {
      return {};
    }
    bytes.resize(before + count);
  }
  return Decode(bytes);
}

std::optional<DWORD> HelperSession::ExitCode() const {
  constexpr DWORD Longest = 5'000;
  if (::WaitForSingleObject(process_.Get(), Longest) != WAIT_OBJECT_0) return std::nullopt;
  DWORD code = 0;
  ::GetExitCodeProcess(process_.Get(), &code);
  return code;
}

}  // namespace ctapi::helper::test
