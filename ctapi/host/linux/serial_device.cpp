#include "host/serial_device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <linux/serial.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

#include "host/linux/serial_device_settings.h"
#include "host/parity_marks.h"
#include "protocol/linux/device_lock.h"

namespace ctapi::host {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

constexpr int BitsPerByte = 11;  // start bit, 8 data bits, parity, stop bit
// A line without flow control takes every byte; this is for drivers that stop all the same.
constexpr int SendingStuck = 2000;  // milliseconds

speed_t SpeedOf(std::int32_t baud) {
  constexpr std::array<std::pair<std::int32_t, speed_t>, 5> Speeds{
      {{9600, B9600}, {19200, B19200}, {38400, B38400}, {57600, B57600}, {115200, B115200}}};
  const auto* const known = std::find_if(Speeds.begin(), Speeds.end(),
                                         [baud](const auto& each) { return each.first == baud; });
  return known == Speeds.end() ? B9600 : known->second;
}

std::int8_t CodeOfOpenError(int error) {
  // A missing permission is no missing device: -1 would say that there is none.
  return MeansNoDevice(error) ? code::InvalidParameter : code::HostError;
}

// USB adapters collect bytes for 16 ms unless told otherwise. Not every driver offers it.
void AskForLowLatency(int descriptor) {
  serial_struct settings{};
  if (::ioctl(descriptor, TIOCGSERIAL, &settings) != 0) return;
  settings.flags |= ASYNC_LOW_LATENCY;
  (void)::ioctl(descriptor, TIOCSSERIAL, &settings);
}

// The C library reports EINVAL where a device takes none of the changes that are left to make: one
// without a parity (a pseudo-terminal, a virtual port) is all the same usable.
bool Apply(int descriptor, const termios& settings) {
  return ::tcsetattr(descriptor, TCSANOW, &settings) == 0 || errno == EINVAL;
}

bool Configure(int descriptor) {
  termios settings{};
  if (::tcgetattr(descriptor, &settings) != 0) return false;
  MakeRaw8E1(settings);
  if (!Apply(descriptor, settings)) return false;
  // A device without modem lines refuses to set them.
  const int lines = TIOCM_DTR | TIOCM_RTS;
  (void)::ioctl(descriptor, TIOCMBIS, &lines);
  AskForLowLatency(descriptor);
  return ::tcflush(descriptor, TCIOFLUSH) == 0;
}

class SerialDevice final : public LinePort {
 public:
  explicit SerialDevice(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}
  ~SerialDevice() override { GiveBack(descriptor_); }

  void Send(ByteView bytes) override;
  Reception Receive(milliseconds longest) override;
  void DiscardInput() override;
  void SetBaud(std::int32_t baud) override;

  [[nodiscard]] int Number() const { return descriptor_.Number(); }

 private:
  // Whether the device is ready before the time is over; throws where it is gone.
  [[nodiscard]] bool WaitFor(short event, int longest);

  Descriptor descriptor_;
  ParityMarks marks_;
  std::int32_t baud_ = 9600;
  steady_clock::time_point sent_{};  // when the last byte will have left the line
};

void SerialDevice::Send(ByteView bytes) {
  ByteView rest = bytes;
  while (!rest.empty()) {
    const ssize_t written = ::write(descriptor_.Number(), rest.data(), rest.size());
    if (written > 0) {
      rest = rest.subspan(static_cast<std::size_t>(written));
    } else if (written < 0 && errno == EINTR) {
      continue;
    } else if (written < 0 && errno != EAGAIN) {
      throw LineLost("write");
    } else if (!WaitFor(POLLOUT, SendingStuck)) {
      throw LineLost("stuck");
    }
  }
  const nanoseconds onTheLine(static_cast<std::int64_t>(bytes.size()) * BitsPerByte *
                              1'000'000'000 / baud_);
  sent_ = std::max(steady_clock::now(), sent_) + onTheLine;
}

LinePort::Reception SerialDevice::Receive(milliseconds longest) {
  const auto end = std::max(steady_clock::now(), sent_) + longest;
  Reception reception;
  while (reception.Received.empty()) {
    const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
    if (!WaitFor(POLLIN, static_cast<int>(std::max<std::int64_t>(0, left.count())))) break;
    std::array<std::uint8_t, 512> buffer;
    const ssize_t count = ::read(descriptor_.Number(), buffer.data(), buffer.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) throw LineLost("read");
    if (count > 0) {
      marks_.Take(ByteView(buffer).first(static_cast<std::size_t>(count)), reception);
    }
  }
  return reception;
}

bool SerialDevice::WaitFor(short event, int longest) {
  const auto end = steady_clock::now() + milliseconds(longest);
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
    pollfd waiting{.fd = descriptor_.Number(), .events = event, .revents = 0};
    const int ready =
        ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(0, left.count())));
    if (ready < 0 && errno == EINTR) continue;
    if (ready < 0) throw LineLost("poll");
    if (ready == 0) return false;
    if ((waiting.revents & event) != 0) return true;
    throw LineLost("hung up");
  }
}

void SerialDevice::DiscardInput() {
  if (::tcflush(descriptor_.Number(), TCIFLUSH) != 0) throw LineLost("flush");
  marks_.Reset();
}

void SerialDevice::SetBaud(std::int32_t baud) {
  termios settings{};
  if (::tcgetattr(descriptor_.Number(), &settings) != 0) throw LineLost("settings");
  const speed_t speed = SpeedOf(baud);
  if (::cfsetispeed(&settings, speed) != 0 || ::cfsetospeed(&settings, speed) != 0 ||
      !Apply(descriptor_.Number(), settings)) {
    throw LineLost("rate");
  }
  baud_ = baud;
}

}  // namespace

OpenedLine OpenSerialDevice(const std::string& path) {
  Descriptor descriptor = OpenDeviceFile(path);
  if (!descriptor.IsOpen()) return {.Code = CodeOfOpenError(errno)};
  // A placeholder without hardware can be opened, but has no settings.
  termios settings{};
  if (::tcgetattr(descriptor.Number(), &settings) != 0) return {.Code = code::InvalidParameter};
  if (!TakeAlone(descriptor, path)) return {.Code = code::HostError};
  auto device = std::make_unique<SerialDevice>(std::move(descriptor));
  if (!Configure(device->Number())) return {.Code = code::HostError};
  return {code::Success, std::move(device)};
}

}  // namespace ctapi::host
