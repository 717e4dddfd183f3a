#include "protocol/linux/com_devices.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
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
  // files: what the USB device says of itself.
  void AddUsb(const std::string& name, const std::map<std::string, std::string>& files) {
    const fs::path device = root_ / "devices/pci/usb1" / name;
    Write(device, files);
    // A modem's device is the interface itself, an adapter's a port of it.
    const bool isModem = name.starts_with("ttyACM");
    Link(name, device / (isModem ? "interface" : "interface/port"));
  }
  // A serial device that hangs on something else.
  void AddOther(const std::string& name) { Link(name, root_ / "devices/platform" / name); }
  // The hub above all USB devices.
  void AddHub(const std::map<std::string, std::string>& files) {
    Write(root_ / "devices/pci/usb1", files);
  }
  [[nodiscard]] std::string Folder() const { return (root_ / "class").string(); }

 private:
  static void Write(const fs::path& folder, const std::map<std::string, std::string>& files) {
    fs::create_directories(folder);
    for (const auto& [name, text] : files) std::ofstream(folder / name) << text << '\n';
  }
  void Link(const std::string& name, const fs::path& hardware) {
    fs::create_directories(hardware);
    fs::create_directories(root_ / "class" / name);
    fs::create_directory_symlink(hardware, root_ / "class" / name / "device");
  }

  fs::path root_;
};

std::map<std::string, std::string> IdentificationsIn(const DeviceTree& tree) {
  std::map<std::string, std::string> found;
  for (const ComDevice& device : FindComDevicesIn(tree.Folder(), "/dev")) {
    found[device.Path] = device.Identification;
  }
  return found;
}

TEST(ComDevices, AreThoseWithHardware) {
  DeviceTree tree;
  tree.Add("ttyS0", "4");
  tree.Add("ttyS1", "0");
  tree.Add("ttyS2", "");
  tree.Add("ttyS40", "4");
  tree.Add("ttySx", "4");
  tree.Add("tty1", "");
  tree.AddUsb("ttyUSB0", {{"idVendor", "0403"}, {"idProduct", "6001"}});
  tree.AddUsb("ttyACM3", {{"idVendor", "0c4b"}, {"idProduct", "9102"}});
  tree.AddOther("ttyAMA0");
  EXPECT_EQ(MakeComTable(FindComDevicesIn(tree.Folder(), "/dev")),
            (ComTable{{1, "/dev/ttyS0"}, {2, "/dev/ttyUSB0"}, {3, "/dev/ttyACM3"}}));
}

// The same adapter keeps its number only if it is known by the same text each time.
TEST(ComDevices, OnUsbAreKnownByVendorProductSerialNumberAndNames) {
  DeviceTree tree;
  tree.AddHub({{"idVendor", "1d6b"}, {"idProduct", "0002"}, {"serial", "0000:00:14.0"}});
  tree.AddUsb("ttyUSB0", {{"idVendor", "0403"},
                          {"idProduct", "6001"},
                          {"serial", "A1b2"},
                          {"manufacturer", "Musterwerk GmbH"},
                          {"product", "Adapter"}});
  tree.AddUsb("ttyUSB1", {{"idVendor", "0c4b"}, {"idProduct", "ea60"}, {"product", "Adapter"}});
  tree.AddUsb("ttyACM0", {{"idVendor", "abcd"}, {"idProduct", "ef01"}, {"serial", "7"}});
  tree.Add("ttyS0", "4");
  EXPECT_EQ(IdentificationsIn(tree),
            (std::map<std::string, std::string>{
                {"/dev/ttyS0", ""},
                {"/dev/ttyUSB0", "USB VID_0403 PID_6001 A1b2 Musterwerk GmbH Adapter"},
                {"/dev/ttyUSB1", "USB VID_0C4B PID_EA60 Adapter"},
                {"/dev/ttyACM0", "USB VID_ABCD PID_EF01 7"},
            }));
}

TEST(ComDevices, OfASystemWithoutSuchAFolderAreNone) {
  EXPECT_TRUE(FindComDevicesIn("/nowhere/class", "/dev").empty());
}

TEST(ComTable, AnOverrideMayNameADeviceByALink) {
  const fs::path folder =
      fs::canonical(testing::TempDir()) / ("com_table_" + std::to_string(::getpid()));
  fs::create_directories(folder);
  const std::string device = folder / "ttyUSB0";
  const std::string link = folder / "by-id";
  std::ofstream(device).put('\n');
  fs::create_symlink(device, link);
  EXPECT_EQ(MakeComTable({{.Path = device, .Identification = "A"}}, {{2, link}}),
            (ComTable{{2, link}}))
      << "the device has no second number";
  EXPECT_EQ(DeviceFileOf(link), device);
  EXPECT_EQ(DeviceFileOf("/dev/there-is-none"), "/dev/there-is-none");
  fs::remove_all(folder);
}

}  // namespace
}  // namespace ctapi
