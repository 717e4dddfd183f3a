#include "platform/serial_devices.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <set>

#ifdef Q_OS_LINUX
#include <grp.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "protocol/com_table.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

// Whatever this machine has: devices are there, and only hardware counts.
// A container may know of the machine's devices without having their device files.
TEST(SerialDevicesTest, EveryDeviceWithAFileIsThere) {
  for (const ctapi::ComDevice& device : ctapi::FindComDevices()) {
    EXPECT_TRUE(device.Path.starts_with("/dev/")) << device.Path;
    EXPECT_EQ(StateOfDevice(device.Path) == DeviceState::Absent,
              !QFile::exists(QString::fromStdString(device.Path)))
        << device.Path;
    EXPECT_EQ(device.BuiltInNumber.has_value(), device.Identification.empty());
  }
}

TEST(SerialDevicesTest, NoDeviceIsFoundTwice) {
  std::set<std::string> paths;
  for (const ctapi::ComDevice& device : ctapi::FindComDevices())
    EXPECT_TRUE(paths.insert(device.Path).second) << device.Path;
}

TEST(SerialDevicesTest, NoGroupOfWhatDoesNotExist) {
  EXPECT_EQ(GroupOfDevice("/dev/there-is-none"), QString());
}

#ifdef Q_OS_LINUX

// A file in a folder that everybody may look into, with these rights.
class FileWithRights {
 public:
  explicit FileWithRights(mode_t rights) {
    constexpr mode_t EverybodyLooks = 0755;
    QFile file(folder_.filePath(QStringLiteral("device")));
    path_ = QFile::encodeName(file.fileName()).toStdString();
    if (!file.open(QIODevice::WriteOnly) || ::chmod(path_.c_str(), rights) != 0 ||
        ::chmod(QFile::encodeName(folder_.path()).constData(), EverybodyLooks) != 0) {
      throw std::runtime_error("no file with rights");
    }
  }
  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  QTemporaryDir folder_;
  std::string path_;
};

TEST(SerialDevicesTest, TheGroupThatMayReadAndWriteIsNamed) {
  const group* const own = ::getgrgid(::getegid());
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(GroupOfDevice(FileWithRights(0660).Path()), QString::fromLocal8Bit(own->gr_name));
  EXPECT_EQ(GroupOfDevice(FileWithRights(0620).Path()), QString()) << "may only write";
  EXPECT_EQ(GroupOfDevice(FileWithRights(0640).Path()), QString()) << "may only read";
  EXPECT_EQ(GroupOfDevice(FileWithRights(0606).Path()), QString());
}

// What a user without any right to the files sees: nobody, where the tests run as root.
template <typename Look>
bool SeenByAStranger(Look look) {
  constexpr uid_t Nobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    const bool isStranger = ::geteuid() != 0 || ::seteuid(Nobody) == 0;
    ::_exit(isStranger && look() ? 0 : 1);
  }
  int status = -1;
  return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

TEST(SerialDevicesTest, ADeviceWithoutRightsIsNotAllowed) {
  const FileWithRights none(0);
  const FileWithRights readOnly(0444);
  const FileWithRights all(0666);
  EXPECT_TRUE(SeenByAStranger([&] { return !IsAllowed(none.Path()); }));
  EXPECT_TRUE(SeenByAStranger([&] { return !IsAllowed(readOnly.Path()); }));
  EXPECT_TRUE(SeenByAStranger([&] { return IsAllowed(all.Path()); }));
  EXPECT_TRUE(SeenByAStranger([&] { return IsAllowed(all.Path() + "-there-is-none"); }));
  EXPECT_TRUE(
      SeenByAStranger([&] { return StateOfDevice(none.Path()) == DeviceState::NotAllowed; }));
}

TEST(SerialDevicesTest, AFileThatIsNoSerialDevice) {
  EXPECT_EQ(StateOfDevice(FileWithRights(0666).Path()), DeviceState::Failed);
  EXPECT_EQ(StateOfDevice("/dev/there-is-none"), DeviceState::Absent);
  EXPECT_EQ(StateOfDevice("/proc/self"), DeviceState::Failed) << "a folder";
}

#endif

}  // namespace
}  // namespace kartocheck::test
