#include "protocol/windows/com_devices.h"

#include <gtest/gtest.h>

namespace ctapi {
namespace {

TEST(ComDevices, AreNumberedByTheirNames) {
  EXPECT_EQ(ComNumberOf("COM1"), 1);
  EXPECT_EQ(ComNumberOf("com12"), 12);
  EXPECT_EQ(ComNumberOf("\\\\.\\COM256"), 256);
  for (const char* const other : {"", "COM", "COM0", "COM-1", "COM1x", "CNCA0", "LPT1", "XCOM1"}) {
    EXPECT_EQ(ComNumberOf(other), std::nullopt) << other;
  }
}

TEST(ComDevices, OfUsbTellWhatTheyAre) {
  EXPECT_EQ(UsbIdentification("USB\\VID_067B&PID_2303\\A12345", "Maker", "Serial Cable"),
            "USB VID_067B PID_2303 A12345 Maker Serial Cable");
  EXPECT_EQ(UsbIdentification("usb\\vid_067b&pid_2303\\6&1a2b3c&0&2", "Maker", ""),
            "USB VID_067B PID_2303 Maker")
      << "a number of the system's making tells the socket";
  EXPECT_EQ(UsbIdentification("FTDIBUS\\VID_0403+PID_6001+AB12CDEFA\\0000", "", "Port"),
            "USB VID_0403 PID_6001 AB12CDEFA Port");
  EXPECT_EQ(UsbIdentification("USB\\VID_1234&PID_5678&MI_02\\7&3&0&0002", "", ""),
            "USB VID_1234 PID_5678");
  EXPECT_EQ(UsbIdentification("ACPI\\PNP0501\\1", "Maker", "Port"), "");
}

TEST(ComDevices, KeepTheirNamesInATable) {
  EXPECT_EQ(DeviceFileOf("COM3"), "COM3");
  EXPECT_EQ(DeviceFileOf("\\\\.\\com3"), "COM3");
  EXPECT_EQ(DeviceFileOf("CNCA0"), "CNCA0");
  const std::vector<ComDevice> devices{{.Path = "COM3", .BuiltInNumber = 3},
                                       {.Path = "COM10", .BuiltInNumber = 10}};
  EXPECT_EQ(ComTableText(MakeComTable(devices)), "3=COM3;10=COM10");
  EXPECT_EQ(ComTableText(MakeComTable(devices, {{1, "com10"}})), "1=com10;3=COM3")
      << "a device has one number";
}

TEST(ComDevices, OfThisMachineHaveTheirOwnNumbers) {
  for (const ComDevice& device : FindComDevices()) {
    ASSERT_TRUE(device.BuiltInNumber.has_value());
    EXPECT_EQ(device.Path, "COM" + std::to_string(*device.BuiltInNumber));
  }
}

}  // namespace
}  // namespace ctapi
