#include <gtest/gtest.h>
#include <string>

#include "discovery/port_check.h"
#include "discovery/terminal_identification.h"
#include "support/answer_book.h"
#include "support/fake_serial_port.h"
#include "support/faulty_api.h"
#include "support/link_fixture.h"
#include "support/printing.h"

// Identification over a link whose n-th exchange fails, for every n and every fault.

namespace kartocheck::test {
namespace {

// The longest dialogue that identification has.
constexpr const char* MobileDelta = R"(
  open 3
  > 20 13 00 81 00
  < 81 02 40 50 90 00
  > 20 13 00 46 00
  < 46 0F 'DENRVPKTDM1.002' 90 00
  > 20 11 00 00 00
  < 95 01
  > 20 71 00 01 00
  < 12 01 00 00 00 00 00 00 00 00 02 90 00
  close
)";

void ExpectOutcome(int faulty, const Fault& fault, Identification result, const TerminalInfo& info,
                   const PortEntry& port) {
  const bool isRandom = fault.kind == Fault::Kind::RandomResponse;
  switch (faulty) {
    case 1:
      EXPECT_EQ(result, isRandom ? Identification::Finished : Identification::ExchangeFailed);
      EXPECT_FALSE(info.Answered);
      EXPECT_EQ(info.ModelName.Trimmed(),
                isRandom ? QStringLiteral("Modell nicht bekannt!") : QString());
      EXPECT_TRUE(port.PortText.IsBlank());
      break;
    case 2:
      EXPECT_EQ(result,
                isRandom ? Identification::NoManufacturerData : Identification::ExchangeFailed);
      EXPECT_FALSE(info.Answered);
      EXPECT_TRUE(info.ModelName.IsBlank());
      EXPECT_TRUE(info.ManufacturerId.IsBlank());
      EXPECT_TRUE(port.PortText.IsBlank());
      break;
    case 3:
      EXPECT_EQ(result, Identification::Finished);
      EXPECT_TRUE(info.Answered);
      EXPECT_EQ(info.ModelName.Trimmed(), u"Serie Delta");
      EXPECT_FALSE(info.Reset95);
      EXPECT_EQ(port.PortText.Trimmed(), u"USB Virtuell COM (CTAPI pn=3)");
      break;
    default:
      EXPECT_EQ(result, Identification::Finished);
      EXPECT_TRUE(info.Answered);
      EXPECT_EQ(info.ModelName.Trimmed(), u"Norva Delta-3 mobil");
      EXPECT_TRUE(info.Reset95 && info.Reset9501);
      EXPECT_EQ(info.UsbVirtualCom, faulty > 4);
      EXPECT_EQ(port.PortText.Trimmed(), faulty > 4
                                             ? QStringLiteral("USB Virtuell COM (CTAPI pn=3)")
                                             : QStringLiteral("COM (CTAPI pn=3)"));
  }
}

TEST(IdentificationFaultTest, EveryFaultAtEveryExchangeHasItsOutcome) {
  const int exchanges = AnswerBook(MobileDelta).Exchanges();
  ASSERT_EQ(exchanges, 4);
  for (int faulty = 1; faulty <= exchanges + 1; ++faulty) {
    for (const Fault& fault : AllFaults()) {
      SCOPED_TRACE("exchange " + std::to_string(faulty) + ", " + fault.Name());
      AnswerBook book(MobileDelta);
      FaultyApi api(book, faulty, fault);
      Link link(api);
      TerminalInfo info;
      PortEntry port;
      ASSERT_EQ(link.session.CtOpen(Port(3)), 0);
      const Identification result = IdentifyTerminal(link.session, Port(3), info, port);
      ExpectOutcome(faulty, fault, result, info, port);
      EXPECT_TRUE(link.dialogs.boxes.empty());
    }
  }
}

TEST(IdentificationFaultTest, ThePortCheckClosesTheLinkWhateverFails) {
  for (int faulty = 1; faulty <= 4; ++faulty) {
    for (const Fault& fault : AllFaults()) {
      SCOPED_TRACE("exchange " + std::to_string(faulty) + ", " + fault.Name());
      AnswerBook book(MobileDelta);
      FaultyApi api(book, faulty, fault);
      Link link(api);
      TerminalInfo info;
      PortEntry port;
      FakeSerialPort serial(FakeSerialPort::FourPorts());
      CheckPort(Port(3),
                {link.session, info, port, serial, link.eventLoop, [](Port) { return QString(); }});
      EXPECT_EQ(api.Calls().back(), u"close");
      EXPECT_FALSE(link.session.IsOpen());
      EXPECT_TRUE(link.dialogs.boxes.empty());
    }
  }
}

}  // namespace
}  // namespace kartocheck::test
