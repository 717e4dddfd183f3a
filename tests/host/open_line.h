#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace ctapi::test {

// A pseudo-terminal without a terminal at its end: the test itself reads and writes there, and
// looks at the device through a descriptor of its own.
class OpenLine {
 public:
  OpenLine() {
    if (far_ < 0 || ::grantpt(far_) != 0 || ::unlockpt(far_) != 0) Fail();
    device_ = ::ptsname(far_);
    near_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (near_ < 0 || ::tcgetattr(near_, &settings) != 0) Fail();
    ::cfmakeraw(&settings);
    if (::tcsetattr(near_, TCSANOW, &settings) != 0) Fail();
  }
  ~OpenLine() {
    ::close(near_);
    ::close(far_);
  }
  OpenLine(const OpenLine&) = delete;
  OpenLine& operator=(const OpenLine&) = delete;

  [[nodiscard]] const std::string& Device() const { return device_; }
  // The device's end; it holds neither a lock nor exclusive mode unless the test takes them.
  [[nodiscard]] int Near() const { return near_; }
  [[nodiscard]] int Far() const { return far_; }

  // Sends bytes to the device and waits until so many can be read there: more than were sent where
  // the device doubles some.
  void Deliver(std::string_view bytes, int readable) const {
    if (::write(far_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) Fail();
    constexpr int Step = 1;           // milliseconds
    constexpr int MostSteps = 5'000;  // bytes pass between the ends within a millisecond or two
    for (int step = 0, count = 0; step < MostSteps; ++step) {
      if (::ioctl(near_, FIONREAD, &count) == 0 && count >= readable) return;
      ::poll(nullptr, 0, Step);
    }
    Fail();
  }

 private:
  [[noreturn]] static void Fail() { throw std::runtime_error("no pseudo-terminal"); }

  int far_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  int near_ = -1;
  std::string device_;
};

}  // namespace ctapi::test
