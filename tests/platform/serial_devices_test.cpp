#include "platform/serial_devices.h"

#include <QFile>

#include <gtest/gtest.h>
#include <set>

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

}  // namespace
}  // namespace kartocheck::test
