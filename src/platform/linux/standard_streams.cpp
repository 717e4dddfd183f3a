#include "platform/standard_streams.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace kartocheck {

namespace {

// Short enough for a request to end the program to be felt at once.
constexpr int MomentMs = 100;

}  // namespace

bool IsTerminal(StandardStream stream) {
  return ::isatty(static_cast<int>(stream)) != 0;
}

bool WaitForInput() {
  if (!IsTerminal(StandardStream::Input)) return true;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  const int ready = ::poll(&input, 1, MomentMs);
  // Reading tells of any other failure.
  return ready > 0 || (ready < 0 && errno != EINTR);
}

}  // namespace kartocheck
