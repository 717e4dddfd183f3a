#include "platform/standard_streams.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kartocheck {

namespace {

// Short enough for a request to end the program to be felt at once.
constexpr int MomentMs = 100;

}  // namespace

bool IsTerminal(StandardStream stream) {
  return ::isatty(static_cast<int>(stream)) != 0;
}

std::optional<int> ColumnsOf(StandardStream stream) {
  winsize size{};
  if (::ioctl(static_cast<int>(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
    return std::nullopt;
  }
  return size.ws_col;
}

void PrepareStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  // Opened the wrong way round. The lowest free number is taken, which is the missing stream's.
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (::fcntl(stream, F_GETFD) != -1) continue;
    (void)::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

bool WaitForInput() {
  if (!IsTerminal(StandardStream::Input)) return true;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  const int ready = ::poll(&input, 1, MomentMs);
  // Reading tells of any other failure.
  return ready > 0 || (ready < 0 && errno != EINTR);
}

}  // namespace kartocheck
