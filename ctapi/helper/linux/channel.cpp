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

bool ReadTo(int input, Bytes& bytes, std::size_t length) {
  const std::size_t before = bytes.size();
  bytes.resize(before + length);
  ssize_t count = 0;
  do {
    count = ::read(input, bytes.data() + before, length);
  } while (count < 0 && errno == EINTR);
  bytes.resize(before + static_cast<std::size_t>(count > 0 ? count : 0));
  return count > 0;
}

}  // namespace

struct Channel::Ends {
  int Input = MoveAway(STDIN_FILENO);
  int Output = MoveAway(STDOUT_FILENO);
};

Channel::Channel() : ends_(std::make_unique<Ends>()) {
  const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  ::dup2(nowhere, STDIN_FILENO);
  ::dup2(nowhere, STDOUT_FILENO);
  ::close(nowhere);
}

// The ends stay open: the process ends with them.
Channel::~Channel() = default;

std::optional<Message> Channel::Receive() {
  Bytes bytes;
  while (const std::size_t missing = MissingBytes(bytes)) {
    if (!ReadTo(ends_->Input, bytes, missing)) return std::nullopt;
  }
  return Decode(bytes);
}

bool Channel::Send(const Message& message) {
  const Bytes bytes = Encode(message);
  ByteView rest(bytes);
  while (!rest.empty()) {
    const ssize_t count = ::write(ends_->Output, rest.data(), rest.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    rest = rest.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace ctapi::helper
