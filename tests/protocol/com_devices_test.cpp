#include "protocol/linux/com_devices.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace ctapi {
namespace {

namespace fs = std::filesystem;

// A tree like the kernel's: serial devices with links to the hardware they belong to.
class DeviceTree {
 public:
  DeviceTree() : root_(fs::path(testing::TempDir()) / ("ttys_" + std::to_string(::getpid()))) {
    fs::create_directories(root_ / "class");
  }
  ~DeviceTree() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  DeviceTree(const DeviceTree&) = delete;
  DeviceTree& operator=(const DeviceTree&) = delete;

  void Add(const std::string& name, const std::string& type) {
    fs::create_directories(root_ / "class" / name);
    if (!type.empty()) std::ofstream(root_ / "class" / name / "type") << type << '\n';
  }
  void AddUsb(const std::string& name, const std::string& vendor, const std::string& serial) {
    const fs::path device = root_ / "devices/pci/usb1" / name;
    fs::create_directories(device / "interface/port");
    std::ofstream(device / "idVendor") << vendor << '\n';
    std::ofstream(device / "idProduct") << "6001\n";
    std::ofstream(device / "product") << "Adapter\n";
    if (!serial.empty()) std::ofstream(device / "serial") << serial << '\n';
    fs::create_directories(root_ / "class" / name);
    fs::create_directory_symlink(device / "interface/port", root_ / "class" / name / "device");
  }
  [[nodiscard]] std::string Folder() const { return (root_ / "class").string(); }

 private:
  fs::path root_;
};

TEST(ComDevices, AreThoseWithHardware) {
  DeviceTree tree;
  tree.Add("ttyS0", "4");
  tree.Add("ttyS1", "0");
  tree.Add("ttyS2", "");
  tree.Add("ttyS40", "4");
  tree.Add("ttySx", "4");
  tree.Add("tty1", "");
  tree.AddUsb("ttyUSB0", "0403", "A1");
  tree.AddUsb("ttyACM3", "0c4b", "");
  EXPECT_EQ(MakeComTable(FindComDevicesIn(tree.Folder(), "/dev")),
            (ComTable{{1, "/dev/ttyS0"}, {2, "/dev/ttyUSB0"}, {3, "/dev/ttyACM3"}}));
  for (const ComDevice& device : FindComDevicesIn(tree.Folder(), "/dev")) {
    if (device.Path == "/dev/ttyUSB0") {
      EXPECT_EQ(device.Identification, "USB VID_0403 PID_6001 A1 Adapter");
    }
    if (device.Path == "/dev/ttyACM3") {
      EXPECT_EQ(device.Identification, "USB VID_0C4B PID_6001 Adapter");
    }
  }
}

TEST(ComDevices, OfASystemWithoutSuchAFolderAreNone) {
  EXPECT_TRUE(FindComDevicesIn("/nowhere/class", "/dev").empty());
}

}  // namespace
}  // namespace ctapi
