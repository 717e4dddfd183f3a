#include "host/serial_device.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "host/open_line.h"
#include "simulator/hex.h"

namespace ctapi::host {
namespace {

namespace fs = std::filesystem;
using ctapi::test::OpenLine;
using ctapi::test::PrintTo;
using ctapi::test::RowName;

TEST(SerialDevice, IsHeldByOneProgram) {
  const OpenLine line;
  OpenedLine first = OpenSerialDevice(line.Device());
  ASSERT_EQ(first.Code, code::Success);
  EXPECT_EQ(OpenSerialDevice(line.Device()).Code, code::HostError);
  first.Line.reset();
  EXPECT_EQ(OpenSerialDevice(line.Device()).Code, code::Success);
}

TEST(SerialDevice, LocksAndExclusiveModeOfOthersCount) {
  const OpenLine line;
  ASSERT_EQ(::flock(line.Near(), LOCK_EX), 0);
  EXPECT_EQ(OpenSerialDevice(line.Device()).Code, code::HostError);
  ASSERT_EQ(::flock(line.Near(), LOCK_UN), 0);
  ASSERT_EQ(::ioctl(line.Near(), TIOCEXCL), 0);
  EXPECT_EQ(OpenSerialDevice(line.Device()).Code, code::HostError);
  ASSERT_EQ(::ioctl(line.Near(), TIOCNXCL), 0);
  EXPECT_EQ(OpenSerialDevice(line.Device()).Code, code::Success);
}

// For programs that look for it only: a lock binds nobody else.
TEST(SerialDevice, IsInExclusiveModeWhileItIsOpen) {
  const OpenLine line;
  const auto isExclusive = [&line] {
    int exclusive = -1;
    EXPECT_EQ(::ioctl(line.Near(), TIOCGEXCL, &exclusive), 0);
    return exclusive != 0;
  };
  OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_TRUE(isExclusive());
  opened.Line.reset();
  EXPECT_FALSE(isExclusive());
}

TEST(SerialDevice, IsLockedWhileItIsOpen) {
  const OpenLine line;
  OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_NE(::flock(line.Near(), LOCK_EX | LOCK_NB), 0);
  opened.Line.reset();
  EXPECT_EQ(::flock(line.Near(), LOCK_EX | LOCK_NB), 0);
}

// A program started meanwhile would hold the port beyond the end of ours.
TEST(SerialDevice, IsNotHandedToOtherPrograms) {
  const OpenLine line;
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  int descriptors = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code closedMeanwhile;
    if (fs::read_symlink(entry.path(), closedMeanwhile) != line.Device()) continue;
    const int number = std::stoi(entry.path().filename().string());
    if (number == line.Near()) continue;
    ++descriptors;
    EXPECT_NE(::fcntl(number, F_GETFD) & FD_CLOEXEC, 0);
  }
  EXPECT_EQ(descriptors, 1);
}

// A lock file of the kind that uucp began with: a process number in text, named after the device.
class LockFile {
 public:
  LockFile(const std::string& device, const std::string& text)
      : path_("/var/lock/LCK.." + fs::path(device).filename().string()) {
    const int file = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0) {
      error_ = errno;
      return;
    }
    if (::write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
      error_ = EIO;
    }
    ::close(file);
  }
  ~LockFile() {
    if (Exists()) ::unlink(path_.c_str());
  }
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  [[nodiscard]] bool Exists() const { return error_ == 0; }
  // A system without the folder, or that leaves it to certain users.
  [[nodiscard]] bool CannotBe() const {
    return error_ == EACCES || error_ == ENOENT || error_ == EROFS;
  }

 private:
  std::string path_;
  int error_ = 0;
};

// Processes are numbered up to 2^22 - 1.
constexpr const char* NoProcess = "4194304\n";

std::string ThisProcess() {
  return std::to_string(::getpid()) + '\n';
}

struct LockRow {
  const char* Name;
  std::string Text;
  std::int8_t Code;
};

class SerialDeviceLockFile : public testing::TestWithParam<LockRow> {};

TEST_P(SerialDeviceLockFile, CountsWhileItsProcessRuns) {
  const OpenLine line;
  const LockFile lock(line.Device(), GetParam().Text);
  if (lock.CannotBe()) GTEST_SKIP() << "no lock files can be made here";
  ASSERT_TRUE(lock.Exists());
  EXPECT_EQ(OpenSerialDevice(line.Device()).Code, GetParam().Code);
}

TEST_P(SerialDeviceLockFile, HasTheNameOfTheDeviceThatALinkLeadsTo) {
  const OpenLine line;
  const LockFile lock(line.Device(), GetParam().Text);
  if (lock.CannotBe()) GTEST_SKIP() << "no lock files can be made here";
  ASSERT_TRUE(lock.Exists());
  const fs::path link =
      fs::path(testing::TempDir()) / ("usb-Adapter-" + std::to_string(::getpid()));
  fs::create_symlink(line.Device(), link);
  const std::int8_t code = OpenSerialDevice(link.string()).Code;
  fs::remove(link);
  EXPECT_EQ(code, GetParam().Code);
}

INSTANTIATE_TEST_SUITE_P(Host, SerialDeviceLockFile,
                         testing::Values(LockRow{"Running", ThisProcess(), code::HostError},
                                         LockRow{"RunningPadded", "    " + ThisProcess(),
                                                 code::HostError},
                                         LockRow{"Ended", NoProcess, code::Success},
                                         LockRow{"NoNumber", "minicom\n", code::Success},
                                         LockRow{"Zero", "0\n", code::Success},
                                         LockRow{"Negative", "-1\n", code::Success},
                                         LockRow{"Empty", "", code::Success}),
                         RowName<LockRow>);

TEST(SerialDevice, ThatIsNoneIsRefused) {
  EXPECT_EQ(OpenSerialDevice("/dev/does_not_exist").Code, code::InvalidParameter);
  EXPECT_EQ(OpenSerialDevice("/dev/null").Code, code::InvalidParameter);
  EXPECT_EQ(OpenSerialDevice("/dev/null/tty").Code, code::InvalidParameter);
}

// The device exists, so that "not there" would send the user to look for a cable.
TEST(SerialDevice, WithoutThePermissionIsAHostError) {
  const OpenLine line;
  ASSERT_EQ(::chmod(line.Device().c_str(), 0), 0);
  constexpr uid_t Nobody = 65534;
  const bool mayOpenAll = ::geteuid() == 0;
  if (mayOpenAll) {
    ASSERT_EQ(::seteuid(Nobody), 0);
  }
  const std::int8_t code = OpenSerialDevice(line.Device()).Code;
  if (mayOpenAll) {
    ASSERT_EQ(::seteuid(0), 0);
  }
  EXPECT_EQ(code, code::HostError);
}

// As far as a pseudo-terminal takes them; it has no parity.
TEST(SerialDevice, HasTheSettingsOfTheProtocol) {
  const OpenLine line;
  termios settings{};
  ASSERT_EQ(::tcgetattr(line.Near(), &settings), 0);
  settings.c_cflag |= CSTOPB | CRTSCTS | PARODD | CMSPAR;
  settings.c_iflag &= ~static_cast<tcflag_t>(INPCK | PARMRK);
  settings.c_lflag |= ICANON | ECHO;
  ASSERT_EQ(::tcsetattr(line.Near(), TCSANOW, &settings), 0);
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  ASSERT_EQ(::tcgetattr(line.Near(), &settings), 0);
  EXPECT_EQ(settings.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
  EXPECT_EQ(settings.c_cflag & (CSTOPB | CRTSCTS | PARODD | CMSPAR), 0U);
  EXPECT_EQ(settings.c_iflag & (INPCK | PARMRK), static_cast<tcflag_t>(INPCK | PARMRK));
  EXPECT_EQ(settings.c_lflag & (ICANON | ECHO), 0U);
}

// What comes within 50 ms.
LinePort::Reception NextOf(LinePort& line) {
  return line.Receive(std::chrono::milliseconds(50));
}

TEST(SerialDevice, StartsWithoutOldBytes) {
  const OpenLine line;
  line.Deliver("old", 3);
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_EQ(NextOf(*opened.Line).Received, Bytes{});
  line.Deliver("new", 3);
  EXPECT_EQ(NextOf(*opened.Line).Received, (Bytes{'n', 'e', 'w'}));
}

// Bytes that another program could not send would go out before the first block. The other end of a
// pseudo-terminal is told in packet mode which buffers were emptied.
TEST(SerialDevice, EmptiesBothBuffersAtTheStart) {
  const OpenLine line;
  const int on = 1;
  ASSERT_EQ(::ioctl(line.Far(), TIOCPKT, &on), 0);
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  pollfd waiting{.fd = line.Far(), .events = POLLIN | POLLPRI, .revents = 0};
  ASSERT_EQ(::poll(&waiting, 1, 0), 1) << "nothing was emptied";
  char status = 0;
  ASSERT_EQ(::read(line.Far(), &status, 1), 1);
  EXPECT_EQ(status & (TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE),
            TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE);
}

TEST(SerialDevice, DiscardsWhatHasComeSoFar) {
  const OpenLine line;
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  line.Deliver("late", 4);
  opened.Line->DiscardInput();
  EXPECT_EQ(NextOf(*opened.Line).Received, Bytes{});
  line.Deliver("answer", 6);
  EXPECT_EQ(NextOf(*opened.Line).Received, (Bytes{'a', 'n', 's', 'w', 'e', 'r'}));
}

TEST(SerialDevice, TakesAByteFFForOne) {
  const OpenLine line;
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  line.Deliver(std::string("\xFF\x00\x41", 3), 4);
  const LinePort::Reception reception = NextOf(*opened.Line);
  EXPECT_EQ(reception.Received, (Bytes{0xFF, 0x00, 0x41}));
  EXPECT_FALSE(reception.Damaged);
}

// One read takes 512 bytes, here up to the first half of the mark of an FF.
TEST(SerialDevice, DiscardsAMarkThatHasBegun) {
  const OpenLine line;
  const OpenedLine opened = OpenSerialDevice(line.Device());
  ASSERT_EQ(opened.Code, code::Success);
  line.Deliver(std::string(511, '\0') + '\xFF', 513);
  ASSERT_EQ(NextOf(*opened.Line).Received, Bytes(511, 0x00));
  opened.Line->DiscardInput();
  line.Deliver(std::string("\x00\x41", 2), 2);
  const LinePort::Reception reception = NextOf(*opened.Line);
  EXPECT_EQ(reception.Received, (Bytes{0x00, 0x41}));
  EXPECT_FALSE(reception.Damaged);
}

}  // namespace
}  // namespace ctapi::host
