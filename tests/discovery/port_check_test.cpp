#include "discovery/port_check.h"

#include <gtest/gtest.h>
#include <vector>

#include "support/dialogue.h"
#include "support/link_fixture.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

class Check {
 public:
  Check(int pn, const char* script) : dialogue_(script), link(dialogue_) {
    CheckPort(pn, {link.session, info, port, link.display});
  }
  // With records of the terminal before.
  Check(int pn, const char* script, TerminalInfo before, PortEntry portBefore)
      : info(std::move(before)), port(std::move(portBefore)), dialogue_(script), link(dialogue_) {
    CheckPort(pn, {link.session, info, port, link.display});
  }

  TerminalInfo info;
  PortEntry port;

 private:
  Dialogue dialogue_;

 public:
  Link link;
};

TEST(CheckPortTest, IdentifiesTheTerminalAndClosesTheLink) {
  const Check check(2, R"(
    open 2
    > 20 13 00 81 00
    < 90 00
    > 20 13 00 46 00
    < 46 0F 'DENRVPKTO 1.002' 90 00
    > 20 71 00 01 00
    < 6D 00
    close
  )");
  EXPECT_TRUE(check.info.Answered);
  EXPECT_EQ(check.info.ModelName.Trimmed(), u"Serie Omega");
  EXPECT_EQ(check.port.ScanResult, 0);
  EXPECT_EQ(check.port.PortText.Trimmed(), u"COM (CTAPI pn=2)");
  EXPECT_FALSE(check.link.session.IsOpen());
  EXPECT_EQ(check.link.display.slots, std::vector<int>{2});
}

TEST(CheckPortTest, ATerminalWithoutAPortTextGetsTheDescriptionOfItsPort) {
  const Check check(8192, R"(
    open 8192
    > 20 13 00 81 00
    < 90 00
    > 20 13 00 46 00
    < 46 0F 'DENRVPKT-G1.002' 90 00
    close
  )");
  EXPECT_EQ(check.port.PortText.Trimmed(), u"USB (CTAPI pn=8192)");
  EXPECT_EQ(check.link.display.slots, std::vector<int>{5});
}

TEST(CheckPortTest, ATerminalThatDoesNotAnswerIsLeftAlone) {
  const Check check(1, R"(
    open 1
    > 20 13 00 81 00
    < -> -10
    close
  )");
  EXPECT_FALSE(check.info.Answered);
  EXPECT_EQ(check.port.ScanResult, 0);
  EXPECT_FALSE(check.link.session.IsOpen());
}

TEST(CheckPortTest, NothingOfTheTerminalBeforeIsLeft) {
  TerminalInfo before;
  before.ModelName = u"Norva Delta-2 mobil";
  before.DisplayText = u"PC (ASN-1)";
  before.SerialSettings = u"9600 Baud";
  before.ManufacturerId = u"DENRV";
  before.ProductCode = u"PKTD ";
  before.SoftwareVersion = u"1.002";
  before.Answered = true;
  before.SelectRefused = true;
  before.Reset95 = true;
  before.UsbVirtualCom = true;
  before.Reset9501 = true;
  PortEntry port;
  port.PortText = u"USB Virtuell COM (CTAPI pn=3)";
  port.AvailText = u"9600 Baud";
  port.BaudText = u"9600";
  const Check check(3, "open 3 -> -127", before, port);
  EXPECT_EQ(check.port.ScanResult, -127);
  EXPECT_FALSE(check.info.Answered);
  EXPECT_FALSE(check.info.SelectRefused);
  EXPECT_FALSE(check.info.Reset95);
  EXPECT_FALSE(check.info.Reset9501);
  EXPECT_FALSE(check.info.UsbVirtualCom);
  EXPECT_TRUE(check.info.ModelName.IsBlank());
  EXPECT_TRUE(check.info.ManufacturerId.IsBlank());
  EXPECT_TRUE(check.info.ProductCode.IsBlank());
  EXPECT_TRUE(check.info.SoftwareVersion.IsBlank());
  EXPECT_TRUE(check.info.DisplayText.IsBlank());
  EXPECT_TRUE(check.port.PortText.IsBlank());
  EXPECT_TRUE(check.port.AvailText.IsBlank());
  EXPECT_TRUE(check.port.BaudText.IsBlank());
  EXPECT_EQ(check.link.display.slots, std::vector<int>{3});
}

}  // namespace
}  // namespace kartocheck::test
