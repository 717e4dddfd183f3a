#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "diagnosis/port_hints.h"
#include "support/fake_port_directory.h"
#include "support/printing.h"
#include "ui/main_window/simulated_window.h"
#include "ui/main_window/window_fixture.h"

// What the flows say where a port or a reader cannot be used.

namespace kartocheck::test {
namespace {

const QString SearchHint = QStringLiteral(
    "Ein Klick auf \"weitere ...\" (oder die Leertaste) sucht nach weiteren Schnittstellen.");

const QString HeldHint = PortHint(CardHeld);
const QString NoServiceHint = PortHint(NoService);

using Lines = std::vector<std::string>;

// From the status check to the answer: status texts, hints and questions, in order.
Lines Asked(SimulatedWindow& window) {
  Lines lines;
  window.onCall = [&](const std::string& call) {
    if (call.starts_with("status ") || call.starts_with("hint ")) lines.push_back(call);
  };
  window.dialogs.onAsk = [&](const Question& question) {
    lines.push_back("ask " + question.text.left(13).toStdString());
    window.dialogs.answers = {Answer::Cancel};
  };
  window.flow.Button(ReadButton);
  return lines;
}

TEST(HintFlowTest, ACardThatIsHeldIsToldInTheStatusBarBeforeThePrompt) {
  FakePortDirectory machine;
  machine.troubles[2] = CardHeld;
  SimulatedWindow window(machine);
  window.practice.Attach(2, PortOf("keine-karte"));
  window.flow.ChoosePort(1);
  const std::string hint = HeldHint.toStdString();
  const Lines lines = Asked(window);
  const auto prompt = std::find(lines.begin(), lines.end(), "ask  Bitte eine K");
  ASSERT_NE(prompt, lines.end());
  ASSERT_GE(prompt - lines.begin(), 2);
  EXPECT_EQ(*(prompt - 1), "status " + hint);
  EXPECT_EQ(*(prompt - 2), "hint 2 " + hint);
}

TEST(HintFlowTest, WithoutAHintThePromptFollowsTheCheck) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  EXPECT_EQ(Asked(window), (Lines{"status Die Krankenversichertendaten lesen", "ask  Bitte eine K",
                                  "status Die Krankenversichertendaten werden angezeigt"}));
}

TEST(HintFlowTest, APortsHintIsRenewedWithEachCheckAndGoneOnceItIsRead) {
  FakePortDirectory machine;
  machine.troubles[1] = CardHeld;
  SimulatedWindow window(machine);
  window.practice.Attach(1, PortOf("kvk-60"));
  std::vector<QString> duringRead;
  window.display.onCall = [&](const std::string& call) {
    if (call == "status Die Krankenversichertendaten werden gelesen") {
      duringRead.push_back(window.frontEnd.portHints[1]);
    }
  };
  window.flow.Button(ReadButton);
  EXPECT_EQ(duringRead, std::vector{HeldHint});
  ASSERT_TRUE(window.module.Terminals[1].DataRead);
  EXPECT_EQ(window.frontEnd.portHints[1], QString());
}

TEST(HintFlowTest, APortWithoutTerminalShowsItsHintAfterTheCheck) {
  FakePortDirectory machine;
  machine.troubles[3] = NoService;
  SimulatedWindow window(machine);
  window.ports.Scan(Port(3));
  EXPECT_EQ(window.frontEnd.portHints[3], NoServiceHint);
  machine.troubles.clear();
  window.ports.Scan(Port(3));
  EXPECT_EQ(window.frontEnd.portHints[3],
            u"COM 3: Ist nicht vorhanden bzw. wird vom System benutzt!");
  window.practice.Attach(3, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Cancel};
  window.ports.Scan(Port(3));
  EXPECT_EQ(window.frontEnd.portHints[3], QString());
}

TEST(HintFlowTest, TheFurtherPortsHintIsThatOfTheChosenOne) {
  FakePortDirectory machine;
  machine.troubles[8193] = CardHeld;
  SimulatedWindow window(machine);
  window.practice.Attach(8192, PortOf("keine-karte"));
  window.practice.Attach(8193, PortOf("keine-karte"));
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.frontEnd.portHints[5], QString());
  window.flow.ChooseFurtherPort(1);
  EXPECT_EQ(window.frontEnd.portHints[5], HeldHint);
  window.practice = {};
  window.ports.SweepFurtherPorts();
  EXPECT_EQ(window.frontEnd.portHints[5], SearchHint) << "there is none any more";
}

TEST(HintFlowTest, AfterASweepWithoutAReaderTheReasonsAreShown) {
  FakePortDirectory machine;
  machine.troublesWithoutReader = {CardHeld, NoService};
  SimulatedWindow window(machine);
  window.practice.Attach(7, PortOf("gamma"));
  EXPECT_EQ(window.frontEnd.hintsWithoutReader, QStringList()) << "nothing is asked at the start";
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.frontEnd.hintsWithoutReader, (QStringList{HeldHint, NoServiceHint}));
  window.practice.Attach(8192, PortOf("omega"));
  window.ports.SweepFurtherPorts();
  EXPECT_EQ(window.frontEnd.hintsWithoutReader, QStringList());
}

TEST(HintFlowTest, SimulatedPortsNeedNoHint) {
  SimulatedWindow window;
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.frontEnd.hintsWithoutReader, QStringList());
  for (int slot = 1; slot < FurtherPortSlot; ++slot) {
    EXPECT_TRUE(window.frontEnd.portHints[slot].endsWith(u"wird vom System benutzt!")) << slot;
  }
  EXPECT_EQ(window.frontEnd.portHints[FurtherPortSlot], SearchHint);
}

}  // namespace
}  // namespace kartocheck::test
