#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kartocheck::test {

// A terminal and the person before it.
class PseudoTerminal {
 public:
  PseudoTerminal() {
    if (far_ < 0 || ::grantpt(far_) != 0 || ::unlockpt(far_) != 0) Fail();
    name_ = ::ptsname(far_);
    near_ = ::open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (near_ < 0) Fail();
  }
  ~PseudoTerminal() {
    ::close(near_);
    HangUp();
  }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  void Type(std::string_view text) const {
    if (::write(far_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) Fail();
  }
  void HangUp() {
    if (far_ >= 0) ::close(far_);
    far_ = -1;
  }
  void SetColumns(unsigned short columns) const {
    const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    if (::ioctl(far_, TIOCSWINSZ, &size) != 0) Fail();
  }

  // What has been written since the last call. To be called often enough: a terminal holds little.
  [[nodiscard]] std::string Read() const {
    std::string text;
    pollfd readable{far_, POLLIN, 0};
    while (::poll(&readable, 1, 0) > 0) {
      char bytes[4096];
      const ssize_t count = ::read(far_, bytes, sizeof bytes);
      if (count <= 0) break;
      text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
  }

  [[nodiscard]] int Near() const { return near_; }
  [[nodiscard]] const std::string& Name() const { return name_; }

 private:
  [[noreturn]] static void Fail() { throw std::runtime_error("no pseudo-terminal"); }

  int far_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  int near_ = -1;
  std::string name_;
};

}  // namespace kartocheck::test
