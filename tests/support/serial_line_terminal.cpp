#include "support/serial_line_terminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace kartocheck::test {

namespace {

const QByteArray Request = QByteArray::fromHex("12C000D2");

// How long the thread sleeps before it looks whether it is to end.
constexpr int PollMs = 10;

constexpr std::array<std::pair<speed_t, int>, 7> Rates{{{B9600, 9600},
                                                        {B19200, 19200},
                                                        {B38400, 38400},
                                                        {B57600, 57600},
                                                        {B115200, 115200},
                                                        {B230400, 230400},
                                                        {B460800, 460800}}};

// Rate of the line; 0 for another rate or character format. A pseudo-terminal has no parity bit:
// Linux clears PARENB.
int RateOf(const termios& settings) {
  if ((settings.c_cflag & (CSIZE | CSTOPB | PARODD)) != CS8) return 0;
  for (const auto& [speed, baud] : Rates) {
    if (cfgetospeed(&settings) == speed) return baud;
  }
  return 0;
}

[[noreturn]] void Throw(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

SerialLineTerminal::SerialLineTerminal(Behaviour behaviour)
    : behaviour_(std::move(behaviour)), line_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  if (line_ < 0) Throw("posix_openpt");
  std::array<char, 64> name{};
  if (::grantpt(line_) != 0 || ::unlockpt(line_) != 0 ||
      ::ptsname_r(line_, name.data(), name.size()) != 0) {
    Throw("pseudo-terminal");
  }
  device_ = QString::fromLocal8Bit(name.data());
  thread_ = std::thread([this] { Serve(); });
}

SerialLineTerminal::~SerialLineTerminal() {
  ended_ = true;
  thread_.join();
  if (line_ >= 0) ::close(line_);
}

std::vector<int> SerialLineTerminal::RequestedRates() const {
  const std::lock_guard lock(guard_);
  return rates_;
}

void SerialLineTerminal::Serve() {
  while (!ended_) {
    pollfd wanted{line_, POLLIN, 0};
    ::poll(&wanted, 1, PollMs);
    if ((wanted.revents & POLLIN) == 0) {
      // Nobody has opened the PC's end: poll comes back at once.
      if ((wanted.revents & POLLHUP) != 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      continue;
    }
    std::array<char, 64> bytes{};
    const ssize_t count = ::read(line_, bytes.data(), bytes.size());
    if (count > 0 && !Hear(QByteArray(bytes.data(), count))) return;
  }
}

// False where the device disappears.
bool SerialLineTerminal::Hear(const QByteArray& bytes) {
  termios settings{};
  // The settings of a pseudo-terminal are those of the end that was opened.
  if (::tcgetattr(line_, &settings) != 0) return true;
  const int rate = RateOf(settings);
  heard_ += bytes;
  while (heard_.size() >= Request.size()) {
    if (!heard_.startsWith(Request)) {
      heard_.remove(0, 1);
      continue;
    }
    heard_.remove(0, Request.size());
    {
      const std::lock_guard lock(guard_);
      rates_.push_back(rate);
    }
    if (rate != 0 && rate == behaviour_.unpluggedAt) {
      ::close(std::exchange(line_, -1));
      return false;
    }
    if (rate != 0 && rate == behaviour_.baud) {
      [[maybe_unused]] const ssize_t written = ::write(
          line_, behaviour_.answer.constData(), static_cast<std::size_t>(behaviour_.answer.size()));
    }
  }
  return true;
}

}  // namespace kartocheck::test
