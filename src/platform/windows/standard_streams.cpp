#include "platform/standard_streams.h"

#include <windows.h>

#include <chrono>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <optional>

#include "platform/windows/console_streams.h"

namespace kartocheck {

namespace {

// Short enough for a request to end the program to be felt at once.
constexpr std::chrono::milliseconds Moment{100};

HANDLE HandleOf(StandardStream stream) {
  switch (stream) {
    case StandardStream::Input:
      return ::GetStdHandle(STD_INPUT_HANDLE);
    case StandardStream::Output:
      return ::GetStdHandle(STD_OUTPUT_HANDLE);
    case StandardStream::Error:
      break;
  }
  return ::GetStdHandle(STD_ERROR_HANDLE);
}

// From here to the end of the program, a stream's text goes another way.
template <typename Stream, typename Buffer>
class Redirection {
 public:
  template <typename Target>
  Redirection(Stream& stream, Target&& target)
      : stream_(stream), buffer_(target), before_(stream.rdbuf(&buffer_)) {}
  ~Redirection() {
    stream_.rdbuf()->pubsync();
    stream_.rdbuf(before_);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

 private:
  Stream& stream_;
  Buffer buffer_;
  std::streambuf* before_;
};

// A program with a window is at no console, also where it was given one's streams.
void JoinConsoleOfStreams() {
  constexpr DWORD Longest = 1;
  DWORD process = 0;
  if (::GetConsoleProcessList(&process, Longest) != 0) return;
  for (const auto stream : {StandardStream::Input, StandardStream::Output, StandardStream::Error}) {
    if (::GetFileType(HandleOf(stream)) == FILE_TYPE_CHAR) {
      ::AttachConsole(ATTACH_PARENT_PROCESS);
      return;
    }
  }
}

Keyboard& TheKeyboard() {
  static Keyboard keyboard;
  return keyboard;
}

}  // namespace

bool IsTerminal(StandardStream stream) {
  DWORD mode = 0;
  return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

std::optional<int> ColumnsOf(StandardStream stream) {
  CONSOLE_SCREEN_BUFFER_INFO information{};
  if (::GetConsoleScreenBufferInfo(HandleOf(stream), &information) == 0) return std::nullopt;
  return information.srWindow.Right - information.srWindow.Left + 1;
}

// Writing to a closed pipe is no more than an error here, and no other file takes the place of a
// missing stream.
void PrepareStandardStreams() {
  JoinConsoleOfStreams();
  if (IsTerminal(StandardStream::Input)) {
    static const Redirection<std::istream, ConsoleInput> input(std::cin, TheKeyboard());
  }
  if (IsTerminal(StandardStream::Output)) {
    static const Redirection<std::ostream, ConsoleOutput> output(std::cout,
                                                                 HandleOf(StandardStream::Output));
  } else {
    ::_setmode(static_cast<int>(StandardStream::Output), _O_BINARY);
  }
  if (IsTerminal(StandardStream::Error)) {
    static const Redirection<std::ostream, ConsoleOutput> error(std::cerr,
                                                                HandleOf(StandardStream::Error));
  } else {
    ::_setmode(static_cast<int>(StandardStream::Error), _O_BINARY);
  }
}

bool WaitForInput() {
  return !IsTerminal(StandardStream::Input) || TheKeyboard().WaitForLine(Moment);
}

}  // namespace kartocheck
