#include "app/bas_mkt_test.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "diagnosis/port_hints.h"
#include "diagnosis/read_loop.h"
#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/link_fixture.h"
#include "support/open_module.h"
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
               .terminate = [](const auto&) { throw Terminated{}; }}) {}

  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  FakePortDirectory directory;
  OpenModule state;
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
  EXPECT_EQ(module.state.SelectedPort, Port(1));
  EXPECT_EQ(module.state.CurrentSlot, 1);
  EXPECT_FALSE(module.state.Busy);
  EXPECT_FALSE(module.state.ExitRequested);
  EXPECT_FALSE(module.state.IsLinkOpen());
  for (int slot = 1; slot <= SlotCount; ++slot) {
    EXPECT_FALSE(module.state.Terminals[slot].Answered);
    EXPECT_TRUE(module.state.Insured[slot].IsEmpty());
    EXPECT_TRUE(module.state.Egk[slot].IsEmpty());
  }
}

TEST(BasMktTestTest, AHintIsForAPortThatCannotBeUsed) {
  Dialogue dialogue(CheckAndRead);
  Module module(dialogue);
  const QString hint = PortHint(CardHeld);
  module.directory.troubles[8192] = CardHeld;
  std::vector<QString> whileOpen;
  module.eventLoop.onYield = [&] {
    if (module.state.IsLinkOpen()) whileOpen.push_back(module.state.HintFor(Port(8192)));
  };
  EXPECT_EQ(module.state.HintFor(Port(8192)), hint);
  EXPECT_EQ(module.state.HintFor(Port(8193)), QString());
  module.state.CheckPort(Port(8192));
  EXPECT_EQ(module.state.HintFor(Port(8192)), hint);
  EXPECT_EQ(module.state.StatusCheck(Port(8192)), Readiness::Ready);
  EXPECT_EQ(module.state.ReadCardData(Port(8192)), ReadOutcome::Done);
  EXPECT_EQ(module.state.HintFor(Port(8192)), QString()) << "data were read";
  module.state.ClearSlot(5);
  EXPECT_EQ(module.state.HintFor(Port(8192)), hint);
  ASSERT_FALSE(whileOpen.empty());
  EXPECT_EQ(std::count(whileOpen.begin(), whileOpen.end(), QString()),
            static_cast<std::ptrdiff_t>(whileOpen.size()))
      << "then this program is the one that uses it";
}

TEST(BasMktTestTest, HintsWithoutAReaderAreForASweepThatFoundNoUsbDevice) {
  FakeApi api;
  Module module(api);
  const QStringList hints{PortHint(NotPermitted), PortHint(NoService)};
  module.directory.troublesWithoutReader = {NotPermitted, NoService};
  EXPECT_EQ(module.state.HintsWithoutReader(), hints);
  module.state.FurtherPorts = {Port(5), Port(256)};
  EXPECT_EQ(module.state.HintsWithoutReader(), hints);
  for (const int reader : {8192, 8447}) {
    module.state.FurtherPorts = {Port(5), Port(reader)};
    EXPECT_EQ(module.state.HintsWithoutReader(), QStringList());
  }
}

TEST(BasMktTestTest, AFurtherPortIsOpenedByItsNumberAndKeptInSlotFive) {
  Dialogue dialogue(CheckAndRead);
  Module module(dialogue);
  module.state.CheckPort(Port(8192));
  EXPECT_EQ(module.state.Terminals[5].ModelName.Trimmed(), u"Serie Omega");
  EXPECT_EQ(module.state.Ports[5].PortText.Trimmed(), u"USB (CTAPI pn=8192)");
  EXPECT_EQ(module.state.StatusCheck(Port(8192)), Readiness::Ready);
  EXPECT_EQ(module.state.ReadCardData(Port(8192)), ReadOutcome::Done);
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

TEST(BasMktTestTest, ACheckEmptiesTheSlotWhateverItFinds) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t { return -127; };
  Module module(api);
  for (const int pn : {2, 8192}) {
    const int slot = Port(pn).Slot();
    module.state.Insured[slot][Element::Town] = QStringLiteral("Musterstadt");
    module.state.Egk[slot].iccsn = QStringLiteral("80276001011234567890");
    TerminalInfo& info = module.state.Terminals[slot];
    info.ModelName = u"Serie Delta";
    info.Answered = info.DataRead = info.EgkData = info.Reset95 = info.Reset9501 = true;
    info.UsbVirtualCom = info.SelectRefused = true;
    module.state.CheckPort(Port(pn));
    EXPECT_TRUE(module.state.Insured[slot].IsEmpty());
    EXPECT_TRUE(module.state.Egk[slot].IsEmpty());
    EXPECT_EQ(info.ModelName.Trimmed(), u"Unbekanntes Gerät?!");
    EXPECT_TRUE(info.Answered) << "the status check's advice needs it";
    EXPECT_FALSE(info.DataRead || info.EgkData || info.Reset95 || info.Reset9501 ||
                 info.UsbVirtualCom || info.SelectRefused);
  }
}

TEST(BasMktTestTest, AFurtherPortWithoutAPortTextHasItsLineOfTheList) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t { return -10; };
  Module module(api);
  module.state.CheckPort(Port(8193));
  EXPECT_EQ(module.state.Ports[5].PortText.Trimmed(), u"USB Device 2 (CTAPI pn=8193)");
}

// The list of further ports tells settings in brackets; COM 1 to 4 are not in it.
TEST(BasMktTestTest, ComPortsHaveNoSerialSettings) {
  const auto omega = [](std::uint8_t& dad, std::uint8_t& sad, std::span<const std::uint8_t> command,
                        std::span<std::uint8_t> response, std::uint16_t& length) -> std::int8_t {
    sad = std::exchange(dad, std::uint8_t{2});
    const QByteArray answer =
        command[1] == 0x13 && command[3] == 0x46
            ? QByteArray::fromHex("460F") + "DENRVPKTO 1.002" + QByteArray::fromHex("9000")
            : QByteArray::fromHex("9000");
    std::copy(answer.begin(), answer.end(), response.begin());
    length = static_cast<std::uint16_t>(answer.size());
    return 0;
  };
  FakeApi api;
  api.data = omega;
  Module module(api);
  module.state.CheckPort(Port(2));
  EXPECT_EQ(module.state.Terminals[2].ModelName.Trimmed(), u"Serie Omega");
  EXPECT_TRUE(module.state.Terminals[2].SerialSettings.IsBlank());

  module.state.FurtherPorts = {Port(2)};
  module.state.CheckPort(Port(2));
  EXPECT_EQ(module.state.Terminals[2].SerialSettings.Trimmed(), u"CTAPI pn=2");
}

void FillSlotFive(OpenModule& state) {
  state.Insured[5][Element::Town] = QStringLiteral("Musterstadt");
  state.Egk[5].iccsn = QStringLiteral("80276001011234567890");
  state.Terminals[5].ModelName = u"Serie Delta";
  state.Terminals[5].Answered = state.Terminals[5].DataRead = true;
  state.Ports[5].AvailText = u"9600";
}

TEST(BasMktTestTest, AnotherFurtherPortEmptiesSlotFive) {
  FakeApi api;
  Module module(api);
  module.state.UseFurtherPort(Port(8192));
  FillSlotFive(module.state);

  module.state.UseFurtherPort(Port(8192));
  EXPECT_TRUE(module.state.Terminals[5].DataRead) << "the same port keeps its records";

  module.state.UseFurtherPort(Port(7));
  EXPECT_EQ(module.state.FurtherPort, Port(7));
  EXPECT_EQ(module.state.Ports[5].PortText.Trimmed(), u"COM 7 (CTAPI pn=7)");
  EXPECT_TRUE(module.state.Ports[5].AvailText.IsBlank());
  EXPECT_TRUE(module.state.Terminals[5].ModelName.IsBlank());
  EXPECT_FALSE(module.state.Terminals[5].Answered);
  EXPECT_FALSE(module.state.Terminals[5].DataRead);
  EXPECT_TRUE(module.state.Insured[5].IsEmpty());
  EXPECT_TRUE(module.state.Egk[5].IsEmpty());

  FillSlotFive(module.state);
  module.state.UseFurtherPort(std::nullopt);
  EXPECT_TRUE(module.state.Ports[5].PortText.IsBlank());
  EXPECT_FALSE(module.state.Terminals[5].Answered);
  EXPECT_TRUE(module.state.Insured[5].IsEmpty());
}

TEST(BasMktTestTest, TheFurtherPortIsSelectedWhileSlotFiveIsTheCurrentOne) {
  FakeApi api;
  Module module(api);
  module.state.UseFurtherPort(Port(8192));
  EXPECT_EQ(module.state.SelectedPort, Port(1)) << "slot 1 is the current one";
  module.state.CurrentSlot = 5;
  module.state.UseFurtherPort(Port(9));
  EXPECT_EQ(module.state.SelectedPort, Port(9));
  module.state.UseFurtherPort(std::nullopt);
  EXPECT_EQ(module.state.SelectedPort, std::nullopt);
}

TEST(BasMktTestTest, TheSystemsIdentificationOfASlotIsThatOfItsPort) {
  FakeApi api;
  Module module(api);
  module.directory.identifications = {{3, QStringLiteral("USB VID_0403 PID_6001")},
                                      {8200, QStringLiteral("a reader")}};
  EXPECT_EQ(module.state.IdentificationOf(3), u"USB VID_0403 PID_6001");
  EXPECT_EQ(module.state.IdentificationOf(1), QString());
  EXPECT_EQ(module.state.IdentificationOf(5), QString()) << "no further port yet";
  module.state.UseFurtherPort(Port(8200));
  EXPECT_EQ(module.state.IdentificationOf(5), u"a reader");
}

TEST(BasMktTestTest, ASweepReplacesTheListOfFurtherPorts) {
  FakeApi api;
  api.init = [](auto, std::uint16_t pn) -> std::int8_t { return pn == 6 || pn == 8194 ? 0 : -1; };
  Module module(api);
  module.state.FurtherPorts = {Port(100)};
  module.state.SweepPorts([](int) { return true; });
  EXPECT_EQ(module.state.FurtherPorts, (std::vector{Port(6), Port(8194)}));
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
  EXPECT_EQ(module.state.ReadCardData(Port(1)), ReadOutcome::Failed);
  EXPECT_TRUE(module.dialogs.boxes.empty());
}

TEST(BasMktTestTest, AFatalMessageIsShownEvenThen) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t {
    throw LibraryNotFound({LibraryFaultKind::FileMissing});
  };
  Module module(api);
  module.state.ExitRequested = true;
  EXPECT_THROW((void)module.state.ReadCardData(Port(1)), Terminated);
  EXPECT_EQ(module.dialogs.Texts(),
            std::vector{QStringLiteral("Datei nicht gefunden, CTNRV32.dll !!!")});
}

}  // namespace
}  // namespace kartocheck::test
