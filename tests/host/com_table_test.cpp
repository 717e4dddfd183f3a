#include "host/com_table.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

#include "support/com_table_rows.h"
#include "support/sentence_name.h"

namespace ctapi::host {
namespace {

namespace fs = std::filesystem;
using kartocheck::test::ComTableRow;

TEST(ComTable, IsReadFromTheProgramsText) {
  EXPECT_EQ(ParseComTable("1=/dev/ttyS0;2=/dev/ttyUSB0"),
            (ComTable{{1, "/dev/ttyS0"}, {2, "/dev/ttyUSB0"}}));
  EXPECT_EQ(ParseComTable("12=/dev/ttyACM0"), (ComTable{{12, "/dev/ttyACM0"}}));
  EXPECT_EQ(ParseComTable("7=/dev/serial/by-id/a=b"), (ComTable{{7, "/dev/serial/by-id/a=b"}}));
  EXPECT_TRUE(ParseComTable("").empty());
}

TEST(ComTable, LeavesOutWhatIsNoEntry) {
  EXPECT_EQ(ParseComTable("0=/dev/a;-1=/dev/b;x=/dev/c;=/dev/d;3;4=;5 =/dev/e;99999999999=/dev/f;"
                          "6=/dev/g;;"),
            (ComTable{{6, "/dev/g"}}));
}

class MadeComTable : public testing::TestWithParam<ComTableRow> {
 protected:
  [[nodiscard]] static std::vector<ComDevice> Devices() {
    std::vector<ComDevice> devices;
    for (const ComTableRow::Device& each : GetParam().devices) {
      devices.push_back({.Path = each.path,
                         .BuiltInNumber = each.builtInNumber,
                         .Identification = each.identification});
    }
    return devices;
  }
};

TEST_P(MadeComTable, IsThatOfTheProgram) {
  EXPECT_EQ(MakeComTable(Devices()), ParseComTable(GetParam().expected));
}

// The order in which the system finds the devices does not matter.
TEST_P(MadeComTable, DoesNotDependOnTheOrderOfTheDevices) {
  std::vector<ComDevice> devices = Devices();
  std::reverse(devices.begin(), devices.end());
  EXPECT_EQ(MakeComTable(devices), ParseComTable(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Host, MadeComTable, testing::ValuesIn(kartocheck::test::ComTableRows()),
                         kartocheck::test::SentenceName());

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
  EXPECT_EQ(MakeComTable(FindComDevices(tree.Folder(), "/dev")),
            (ComTable{{1, "/dev/ttyS0"}, {2, "/dev/ttyUSB0"}, {3, "/dev/ttyACM3"}}));
  for (const ComDevice& device : FindComDevices(tree.Folder(), "/dev")) {
    if (device.Path == "/dev/ttyUSB0") {
      EXPECT_EQ(device.Identification, "USB VID_0403 PID_6001 A1 Adapter");
    }
    if (device.Path == "/dev/ttyACM3") {
      EXPECT_EQ(device.Identification, "USB VID_0C4B PID_6001 Adapter");
    }
  }
}

TEST(ComDevices, OfASystemWithoutSuchAFolderAreNone) {
  EXPECT_TRUE(FindComDevices("/nowhere/class", "/dev").empty());
}

}  // namespace
}  // namespace ctapi::host
