#include "platform/machine_port_directory.h"

#include <gtest/gtest.h>
#include <map>

#include "support/fake_port_directory.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

class MachinePortDirectoryTest : public testing::Test {
 protected:
  static std::unique_ptr<PortDirectory> SerialPorts() {
    auto ports = std::make_unique<FakePortDirectory>();
    for (const int pn : {1, 8192}) {
      ports->troubles[pn] = NotPermitted;
      ports->identifications[pn] = QStringLiteral("serial device");
    }
    ports->troublesWithoutReader = {NotPermitted};
    return ports;
  }

  std::map<int, ctapi::PortInfo> told;
  std::vector<int> asked;
  MachinePortDirectory directory{SerialPorts(), [this](int pn) {
                                   asked.push_back(pn);
                                   return told[pn];
                                 }};
};

TEST_F(MachinePortDirectoryTest, SerialPortsAreNoMatterOfTheLibrary) {
  EXPECT_EQ(directory.TroubleOf(Port(1)), NotPermitted);
  EXPECT_EQ(directory.IdentificationOf(Port(1)), u"serial device");
  for (const int pn : {2, 256, 8191, 8448}) {
    EXPECT_EQ(directory.TroubleOf(Port(pn)), PortTrouble());
    EXPECT_EQ(directory.IdentificationOf(Port(pn)), QString());
  }
  EXPECT_TRUE(asked.empty());
}

TEST_F(MachinePortDirectoryTest, UsbDevicesAreTheLibrarys) {
  told[8192] = {.Trouble = PortTroubleKind::CardHeld, .Name = "Leser für Karten"};
  EXPECT_EQ(directory.TroubleOf(Port(8192)), CardHeld);
  EXPECT_EQ(directory.IdentificationOf(Port(8192)), u"Leser für Karten");
  EXPECT_EQ(directory.TroubleOf(Port(8447)), PortTrouble());
  EXPECT_EQ(directory.IdentificationOf(Port(8447)), QString());
  EXPECT_EQ(asked, (std::vector{8192, 8192, 8447, 8447}));
}

TEST_F(MachinePortDirectoryTest, WithoutAReaderTheSerialPortsTroublesComeFirst) {
  EXPECT_EQ(directory.TroublesWithoutReader(), std::vector{NotPermitted});
  told[ctapi::EveryReader] = {.Trouble = PortTroubleKind::NoService};
  EXPECT_EQ(directory.TroublesWithoutReader(), (std::vector{NotPermitted, NoService}));
  EXPECT_EQ(asked, (std::vector{ctapi::EveryReader, ctapi::EveryReader}));
}

}  // namespace
}  // namespace kartocheck::test
