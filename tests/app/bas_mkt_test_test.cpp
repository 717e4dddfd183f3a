#include "app/bas_mkt_test.h"

#include <gtest/gtest.h>

#include "diagnosis/read_loop.h"
#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/link_fixture.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

class Module {
 public:
  explicit Module(CtApi& api)
      : state({.api = api,
               .dialogs = dialogs,
               .display = display,
               .eventLoop = eventLoop,
               .serial = serial,
               .directory = directory,
               .terminate = [] { throw Terminated{}; }}) {}

  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  FakePortDirectory directory;
  Bas_MKT_Test state;
};

constexpr const char* CheckAndRead = R"(
  open 8192
  > 20 13 00 81 00
  < 90 00
  > 20 13 00 46 00
  < 46 0F 'DENRVPKTO 1.002' 90 00
  > 20 71 00 01 00
  < 6D 00
  close
  open 8192
  > 20 12 01 00 01 01
  < 90 00
  > 00 A4 04 00 06 D2 76 00 00 01 01
  < 90 00
  close
  open 8192
  > 20 11 00 00 00
  < 90 00
  > 20 12 01 00 01 01
  < 90 00
  > 20 11 01 00
  < 90 00
  > 00 A4 04 00 06 D2 76 00 00 01 01
  < 90 00
  > 00 B0 00 00 00
  < {B} 90 00
  > 20 11 00 00 00
  < 90 00
  close
)";

TEST(BasMktTestTest, StartsWithPortOneAndNothingKnown) {
  FakeApi api;
  const Module module(api);
  EXPECT_EQ(module.state.SelectedPort, 1);
  EXPECT_EQ(module.state.CurrentPort, 1);
  EXPECT_FALSE(module.state.Busy);
  EXPECT_FALSE(module.state.ExitRequested);
  EXPECT_FALSE(module.state.IsLinkOpen());
  for (int slot = 1; slot <= SlotCount; ++slot) {
    EXPECT_FALSE(module.state.Terminals[slot].Answered);
    EXPECT_TRUE(module.state.Insured[slot].IsEmpty());
    EXPECT_TRUE(module.state.Egk[slot].IsEmpty());
  }
}

TEST(BasMktTestTest, AFurtherPortIsOpenedByItsNumberAndKeptInSlotFive) {
  Dialogue dialogue(CheckAndRead);
  Module module(dialogue);
  module.state.CheckPort(8192);
  EXPECT_EQ(module.state.Terminals[5].ModelName.Trimmed(), u"Serie Omega");
  EXPECT_EQ(module.state.Ports[5].PortText.Trimmed(), u"USB (CTAPI pn=8192)");
  EXPECT_EQ(module.state.StatusCheck(8192), ReadyToRead);
  EXPECT_EQ(module.state.ReadCardData(8192), 0);
  EXPECT_TRUE(module.state.Terminals[5].DataRead);
  EXPECT_EQ(module.state.Insured[5][Element::LastName], u"Übermaß");
  for (int slot = 1; slot <= 4; ++slot) {
    EXPECT_TRUE(module.state.Insured[slot].IsEmpty());
    EXPECT_FALSE(module.state.Terminals[slot].Answered);
  }
}

TEST(BasMktTestTest, ClearingASlotLeavesTheOthers) {
  FakeApi api;
  Module module(api);
  for (int slot = 1; slot <= SlotCount; ++slot) {
    module.state.Insured[slot][Element::Town] = QStringLiteral("Musterstadt");
    module.state.Terminals[slot].DataRead = true;
  }
  module.state.ClearSlot(2);
  for (int slot = 1; slot <= SlotCount; ++slot) {
    EXPECT_EQ(module.state.Insured[slot].IsEmpty(), slot == 2);
    EXPECT_EQ(module.state.Terminals[slot].DataRead, slot != 2);
  }
}

TEST(BasMktTestTest, ProceduresAskNothingOnceTheProgramIsAskedToEnd) {
  Dialogue dialogue(R"(
    open 1
    > 20 11 00 00 00
    < 90 00
    > 20 12 01 00 01 01
    < 62 00
    > 20 11 00 00 00
    < 90 00
    close
  )");
  Module module(dialogue);
  module.state.ExitRequested = true;
  EXPECT_EQ(module.state.ReadCardData(1), -1);
  EXPECT_TRUE(module.dialogs.boxes.empty());
}

TEST(BasMktTestTest, AFatalMessageIsShownEvenThen) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t { throw LibraryNotFound("no such file"); };
  Module module(api);
  module.state.ExitRequested = true;
  EXPECT_THROW((void)module.state.ReadCardData(1), Terminated);
  EXPECT_EQ(module.dialogs.Texts(),
            std::vector{QStringLiteral("Datei nicht gefunden, CTNRV32.dll !!!")});
}

}  // namespace
}  // namespace kartocheck::test
