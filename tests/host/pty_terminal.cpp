#include "host/pty_terminal.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace ctapi::test {

namespace {

constexpr int CharacterWait = 100;  // milliseconds; the host's pieces come without pauses

speed_t SpeedOf(std::int32_t baud) {
  switch (baud) {
    case 19200:
      return B19200;
    case 38400:
      return B38400;
    case 57600:
      return B57600;
    case 115200:
      return B115200;
    default:
      return B9600;
  }
}

}  // namespace

PtyTerminal::PtyTerminal(BlockTerminal::Execute execute, Line line)
    : line_(std::move(line)), terminal_(std::move(execute), line_.Manners) {
  master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
    throw std::runtime_error("no pseudo-terminal");
  }
  std::array<char, 128> name{};
  if (::ptsname_r(master_, name.data(), name.size()) != 0) throw std::runtime_error("no name");
  device_ = name.data();
  slave_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  termios settings{};
  ::tcgetattr(slave_, &settings);
  ::cfmakeraw(&settings);
  ::tcsetattr(slave_, TCSANOW, &settings);
  stop_ = ::eventfd(0, EFD_CLOEXEC);
  thread_ = std::thread([this] { Run(); });
}

PtyTerminal::~PtyTerminal() {
  const std::uint64_t one = 1;
  (void)!::write(stop_, &one, sizeof one);
  thread_.join();
  CloseBothEnds();
  ::close(stop_);
}

std::vector<BlockTerminal::Bytes> PtyTerminal::Executed() const {
  const std::lock_guard lock(mutex_);
  return terminal_.Executed();
}

std::size_t PtyTerminal::BytesOnTheLine() const {
  const std::lock_guard lock(mutex_);
  return bytes_;
}

void PtyTerminal::Run() {
  bool waitsForMore = false;
  while (master_ >= 0) {
    std::array<pollfd, 2> waiting{{{stop_, POLLIN, 0}, {master_, POLLIN, 0}}};
    const int ready = ::poll(waiting.data(), 2, waitsForMore ? CharacterWait : -1);
    if (waiting[0].revents != 0 || ready < 0) return;
    BlockTerminal::Bytes answer;
    if (ready == 0) {
      const std::lock_guard lock(mutex_);
      answer = terminal_.TakeSilence();
    } else {
      std::array<std::uint8_t, 512> buffer;
      const ssize_t count = ::read(master_, buffer.data(), buffer.size());
      if (count <= 0) return;
      if (line_.IsSilent || !HostUsesTheRate()) continue;
      const auto length = static_cast<std::size_t>(count);
      TakeTime(length);
      const std::lock_guard lock(mutex_);
      bytes_ += length;
      answer = terminal_.Take(std::span(buffer).first(length));
    }
    waitsForMore = ready != 0 && answer.empty();
    if (!answer.empty()) Answer(std::move(answer));
  }
}

void PtyTerminal::Answer(BlockTerminal::Bytes block) {
  const auto fault = line_.Faults.find(blocks_++);
  using Kind = LineFault::Kind;
  switch (fault == line_.Faults.end() ? Kind::None : fault->second.What) {
    case Kind::None:
      break;
    case Kind::Lost:
      return;
    case Kind::FlippedBit:
      block[block.size() / 2] ^= 0x10;
      break;
    case Kind::Late:
      std::this_thread::sleep_for(fault->second.Delay);
      break;
    case Kind::GarbageBefore:
      block.insert(block.begin(), {0xFF, 0x00, 0x55});
      break;
    case Kind::Unplugged:
      CloseBothEnds();
      return;
  }
  TakeTime(block.size());
  Write(block);
}

void PtyTerminal::Write(const BlockTerminal::Bytes& bytes) {
  {
    const std::lock_guard lock(mutex_);
    bytes_ = blocks_ == 1 ? 0 : bytes_ + bytes.size();
  }
  (void)!::write(master_, bytes.data(), bytes.size());
}

void PtyTerminal::TakeTime(std::size_t bytes) const {
  if (!line_.TakesLineTime) return;
  std::this_thread::sleep_for(
      std::chrono::nanoseconds(static_cast<std::int64_t>(bytes) * 11 * 1'000'000'000 / line_.Baud));
}

void PtyTerminal::CloseBothEnds() {
  if (slave_ >= 0) ::close(std::exchange(slave_, -1));
  if (master_ >= 0) ::close(std::exchange(master_, -1));
}

bool PtyTerminal::HostUsesTheRate() const {
  termios settings{};
  return ::tcgetattr(master_, &settings) == 0 && ::cfgetospeed(&settings) == SpeedOf(line_.Baud);
}

}  // namespace ctapi::test
