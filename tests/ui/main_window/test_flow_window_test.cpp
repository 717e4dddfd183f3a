#include <array>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/printing.h"
#include "ui/main_window/window_fixture.h"

// The port choice, the status tabs and the end of the program.

namespace kartocheck::test {
namespace {

using Calls = std::vector<std::string>;

// The terminal has no card, and the user does not want to insert one.
constexpr const char* NoCardOnPortOne = R"(
  open 1
  > 20 13 00 81 00
  < 69 00
  close
  open 1
  > 20 12 01 00 01 01
  < 62 00
  > 00 A4 04 00 06 D2 76 00 00 01 01
  < 69 85
  close
)";

TEST(ChoosePortTest, MembersZeroToThreeSelectTheirPortAndSaySo) {
  constexpr std::array<QStringView, 4> Texts{
      u"Die serielle Schnittstelle COM 1 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 2 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 3 wurde ausgewählt",
      u"Die serielle Schnittstelle COM 4 wurde ausgewählt",
  };
  for (int member = 0; member < 4; ++member) {
    FakeApi api;
    Window window(api);
    window.flow.ChoosePort(member);
    EXPECT_EQ(window.module.SelectedPort, Port(member + 1));
    EXPECT_EQ(window.module.CurrentSlot, member + 1);
    EXPECT_EQ(window.display.statusTexts,
              std::vector{Texts.at(static_cast<std::size_t>(member)).toString()});
  }
}

TEST(ChoosePortTest, TheDataOfThePortAreShown) {
  FakeApi api;
  Window window(api);
  window.module.Terminals[2].Answered = true;
  window.module.Terminals[2].DataRead = true;
  window.module.Terminals[2].Reset95 = true;
  window.module.Insured[2][Element::LastName] = QStringLiteral("Mustermann");
  window.flow.ChoosePort(1);
  ASSERT_EQ(window.frontEnd.frames.size(), 1U);
  EXPECT_EQ(window.frontEnd.frames[0].title, u"Krankenversicherten Kartendaten(Mobil)");
  EXPECT_EQ(window.frontEnd.frames[0].values[9], u"Mustermann");
}

TEST(ChoosePortTest, APortWithoutATerminalShowsEmptyFields) {
  FakeApi api;
  Window window(api);
  window.module.Insured[3][Element::LastName] = QStringLiteral("Mustermann");
  window.flow.ChoosePort(2);
  ASSERT_EQ(window.frontEnd.frames.size(), 1U);
  for (const QString& value : window.frontEnd.frames[0].values) EXPECT_EQ(value, QString());
}

TEST(ChoosePortTest, NothingHappensDuringAnAction) {
  Dialogue dialogue(NoCardOnPortOne);
  Window window(dialogue);
  window.dialogs.answers = {Answer::Cancel};
  window.eventLoop.onYield = [&] { window.flow.ChoosePort(2); };
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.module.SelectedPort, Port(1));
  EXPECT_EQ(window.module.CurrentSlot, 1);
}

TEST(StatusTabTest, TheRowsOfATab) {
  FakeApi api;
  Window window(api);
  PortEntry& port = window.module.Ports[4];
  port.PortText = u"COM (CTAPI pn=4)";
  port.AvailText = u"9600 Baud";
  TerminalInfo& info = window.module.Terminals[4];
  info.ModelName = u"Serie Delta";
  info.ManufacturerId = u"DENRV";
  info.ProductCode = u"PKTD ";
  info.SoftwareVersion = u"1.002";
  info.DisplayText = u"PC (ASN-1)";
  EXPECT_EQ(
      StatusTabOf(window.module, 4),
      (StatusTab{QStringLiteral("COM (CTAPI pn=4)"), QStringLiteral("9600 Baud"),
                 QStringLiteral("Serie Delta"), QStringLiteral("DENRV"), QStringLiteral("PKTD"),
                 QStringLiteral("1.002"), QStringLiteral("PC (ASN-1)"), QString()}));
  EXPECT_EQ(StatusTabOf(window.module, 1), StatusTab{});
}

void ExpectExitQuestion(const Window& window) {
  ASSERT_EQ(window.dialogs.boxes.size(), 1U);
  const ShownBox& box = window.dialogs.boxes.front();
  EXPECT_EQ(box.title, u"Beendet KartoCheck ");
  EXPECT_EQ(box.text, u" Möchten Sie das Programm beenden? ");
  EXPECT_EQ(box.icon, Icon::Question);
  EXPECT_TRUE(box.isQuestion);
  EXPECT_EQ(box.buttons, Buttons::YesNo);
}

TEST(MayCloseTest, TheUserIsAskedAndYesCloses) {
  FakeApi api;
  Window window(api);
  window.dialogs.answers = {Answer::Yes};
  EXPECT_TRUE(window.flow.MayClose(CloseSource::User));
  ExpectExitQuestion(window);
}

TEST(MayCloseTest, NoLeavesEverythingRunning) {
  FakeApi api;
  Window window(api);
  window.dialogs.answers = {Answer::No};
  EXPECT_FALSE(window.flow.MayClose(CloseSource::User));
  ExpectExitQuestion(window);
  EXPECT_FALSE(window.module.ExitRequested);
  window.flow.Button(CopyButton);
  EXPECT_EQ(window.frontEnd.clipboard.size(), 1U);
  EXPECT_EQ(window.frontEnd.calls.back(), "action ends") << "and the window stays open";
}

TEST(MayCloseTest, ProgramAndSystemAreNotAsked) {
  for (const CloseSource source : {CloseSource::Program, CloseSource::System}) {
    FakeApi api;
    Window window(api);
    EXPECT_TRUE(window.flow.MayClose(source));
    EXPECT_TRUE(window.dialogs.boxes.empty());
  }
}

TEST(MayCloseTest, ALinkLeftOpenIsClosed) {
  FakeApi api;
  api.data = [](auto&, auto&, auto, auto, auto&) -> std::int8_t {
    throw std::runtime_error("anything");
  };
  Window window(api);
  EXPECT_THROW(window.flow.Button(ReadButton), Terminated);
  ASSERT_TRUE(window.module.IsLinkOpen());
  EXPECT_TRUE(window.flow.MayClose(CloseSource::Program));
  EXPECT_FALSE(window.module.IsLinkOpen());
}

class CloseDuringActionTest : public testing::TestWithParam<CloseSource> {};

// The request is refused, nothing more is asked, the running call ends with reset and close, and
// the window closes with the action.
TEST_P(CloseDuringActionTest, IsKeptUntilTheEnd) {
  Dialogue dialogue(NoCardOnPortOne);
  Window window(dialogue);
  window.eventLoop.onYield = [&] {
    EXPECT_FALSE(window.flow.MayClose(GetParam()));
    EXPECT_TRUE(window.module.ExitRequested);
  };
  window.flow.Button(ReadButton);
  EXPECT_TRUE(window.dialogs.boxes.empty());
  EXPECT_EQ(window.frontEnd.calls,
            (Calls{"action starts", "show data", "show data", "action ends", "close window"}));
  EXPECT_FALSE(window.module.ExitRequested);
  EXPECT_FALSE(window.module.Busy);
}

INSTANTIATE_TEST_SUITE_P(MainWindow, CloseDuringActionTest,
                         testing::Values(CloseSource::User, CloseSource::Program,
                                         CloseSource::System));

TEST(CloseDuringActionTest, TheWindowMayCloseInsideTheClose) {
  Dialogue dialogue(NoCardOnPortOne);
  Window window(dialogue);
  window.eventLoop.onYield = [&] { (void)window.flow.MayClose(CloseSource::User); };
  window.frontEnd.onCall = [&](const std::string& call) {
    if (call != "close window") return;
    EXPECT_TRUE(window.flow.MayClose(CloseSource::Program));
  };
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.calls.back(), "close window");
}

TEST(CloseDuringActionTest, WithoutARequestTheWindowStays) {
  Dialogue dialogue(NoCardOnPortOne);
  Window window(dialogue);
  window.dialogs.answers = {Answer::Cancel};
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.calls.back(), "action ends");
}

}  // namespace
}  // namespace kartocheck::test
