#include "helper/channel.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace ctapi::helper {

namespace {

// Away from the small numbers, which a library that tidies up is likely to close, and not left to
// programs that it starts.
int MoveAway(int descriptor) {
  constexpr int FromHereOn = 200;
  return ::fcntl(descriptor, F_DUPFD_CLOEXEC, FromHereOn);
}

}  // namespace

Channel::Channel() : input_(MoveAway(STDIN_FILENO)), output_(MoveAway(STDOUT_FILENO)) {
  const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  ::dup2(nowhere, STDIN_FILENO);
  ::dup2(nowhere, STDOUT_FILENO);
  ::close(nowhere);
}

std::optional<Message> Channel::Receive() {
  Bytes bytes;
  while (const std::size_t missing = MissingBytes(bytes)) {
    if (!ReadTo(bytes, missing)) return std::nullopt;
  }
  return Decode(bytes);
}

bool Channel::ReadTo(Bytes& bytes, std::size_t length) {
  const std::size_t before = bytes.size();
  bytes.resize(before + length);
  ssize_t count = 0;
  do {
    count = ::read(input_, bytes.data() + before, length);
  } while (count < 0 && errno == EINTR);
  bytes.resize(before + static_cast<std::size_t>(count > 0 ? count : 0));
  return count > 0;
}

bool Channel::Send(const Message& message) {
  const Bytes bytes = Encode(message);
  ByteView rest(bytes);
  while (!rest.empty()) {
    const ssize_t count = ::write(output_, rest.data(), rest.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    rest = rest.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace ctapi::helper
