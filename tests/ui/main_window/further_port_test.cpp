#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/printing.h"
#include "ui/main_window/simulated_window.h"
#include "ui/main_window/window_fixture.h"

// "weitere ..." and the list of further ports.

namespace kartocheck::test {
namespace {

using Lines = std::vector<std::string>;

// What the log says but for the texts and percentages of a sweep.
Lines WithoutSweep(const Lines& log) {
  Lines lines;
  for (const std::string& line : log) {
    if (line.starts_with("status Programm prüft ")) continue;
    if (line.starts_with("progress ") && line != "progress 0") continue;
    if (!lines.empty() && lines.back() == line) continue;
    lines.push_back(line);
  }
  return lines;
}

TEST(FurtherPortsTest, ChoosingThemWithoutAListSweepsFirstAndTakesTheFirst) {
  SimulatedWindow window;
  window.practice.Attach(7, PortOf("gamma"));
  window.practice.Attach(8193, PortOf("omega"));
  window.flow.ChoosePort(4);
  EXPECT_EQ(WithoutSweep(window.log),
            (Lines{"action starts", "frame 0", "progress 0", "search begins", "progress 0",
                   "show port list", "name further port weitere ...", "slot 5",
                   "hint 5 Ein Klick auf \"weitere ...\" (oder die Leertaste) sucht nach weiteren "
                   "Schnittstellen.",
                   "no search", "progress 0", "frame 3", "action ends", "show port list",
                   "name further port COM 7 (CTAPI pn=7)", "slot 5", "show data",
                   "status Die serielle Schnittstelle COM 7 wurde ausgewählt"}));
  EXPECT_EQ(window.frontEnd.progress.at(window.frontEnd.progress.size() - 2), 99);
  EXPECT_EQ(window.module.CurrentSlot, 5);
  EXPECT_EQ(window.module.SelectedPort, Port(7));
  EXPECT_EQ(window.frontEnd.chosenLine, 0);
  EXPECT_EQ(window.frontEnd.portList,
            (QStringList{QStringLiteral("COM 7 (CTAPI pn=7)"),
                         QStringLiteral("USB Device 2 (CTAPI pn=8193)")}));
}

// The sweep shows its wait frame, and the frame that was shown comes back.
TEST(FurtherPortsTest, TheFrameBeforeTheSweepComesBack) {
  SimulatedWindow window;
  window.practice.Attach(7, PortOf("gamma"));
  window.flow.Button(StatusButton);
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.frontEnd.shownFrames, (std::vector{2, 0, 2}));
}

TEST(FurtherPortsTest, ChoosingThemAgainDoesNotSweepAgain) {
  SimulatedWindow window;
  window.practice.Attach(7, PortOf("gamma"));
  window.flow.ChoosePort(4);
  window.flow.ChoosePort(0);
  window.log.clear();
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.log,
            (Lines{"show data", "status Die serielle Schnittstelle COM 7 wurde ausgewählt"}));
  EXPECT_EQ(window.module.SelectedPort, Port(7));
}

TEST(FurtherPortsTest, WhileThereAreNoneReadAndDiagnosisOnlySaySo) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.display.statusTexts.back(), u"Keinen Chipkartenleser gefunden!");
  EXPECT_EQ(window.module.CurrentSlot, 5);
  EXPECT_EQ(window.module.SelectedPort, std::nullopt);
  for (const int button : {DiagnosisButton, ReadButton}) {
    window.log.clear();
    window.flow.Button(button);
    EXPECT_EQ(window.log, (Lines{"action starts", "status Keinen Chipkartenleser gefunden!",
                                 "progress 0", "action ends"}));
  }
  EXPECT_TRUE(window.dialogs.boxes.empty());

  window.flow.ChoosePort(0);
  window.flow.Button(ReadButton);
  EXPECT_TRUE(window.module.Terminals[1].DataRead) << "another port can be chosen";
}

TEST(FurtherPortsTest, AnEmptyListIsSweptAnewAtTheNextChoice) {
  SimulatedWindow window;
  window.flow.ChoosePort(4);
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.module.SelectedPort, Port(8192));
}

TEST(FurtherPortsTest, AClickDuringAnActionStartsNoSweep) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.eventLoop.onYield = [&] {
    window.flow.ChoosePort(4);
    window.flow.ChooseFurtherPort(0);
  };
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.module.CurrentSlot, 1);
  EXPECT_EQ(window.module.SelectedPort, Port(1));
}

TEST(FurtherPortsTest, ACloseRequestDuringTheSweepClosesAtItsEnd) {
  SimulatedWindow window;
  window.onCall = [&](const std::string& call) {
    if (!call.ends_with(" COM 9")) return;
    EXPECT_FALSE(window.flow.MayClose(CloseSource::User));
  };
  window.flow.ChoosePort(4);
  EXPECT_EQ(std::count(window.log.begin(), window.log.end(), "close window"), 1);
  EXPECT_TRUE(window.dialogs.boxes.empty());
}

struct ChosenRow {
  int pn;
  QStringView text;
  std::string tab;
};

TEST(FurtherPortsTest, EachKindOfPortHasItsNameAndText) {
  const ChosenRow rows[] = {
      {5, u"Die serielle Schnittstelle COM 5 wurde ausgewählt", "COM 5 (CTAPI pn=5)"},
      {256, u"Die serielle Schnittstelle COM 256 wurde ausgewählt", "COM 256 (CTAPI pn=256)"},
      {8192, u"Das USB device 1 wurde ausgewählt", "USB Device 1 (CTAPI pn=8192)"},
      {8447, u"Das USB device 256 wurde ausgewählt", "USB Device 256 (CTAPI pn=8447)"},
      {257, u"Das ?device 257 wurde ausgewählt", "?Device 257 (CTAPI pn=257)"},
      {8448, u"Das ?device 8448 wurde ausgewählt", "?Device 8448 (CTAPI pn=8448)"},
  };
  SimulatedWindow window;
  for (const ChosenRow& row : rows) window.module.FurtherPorts.emplace_back(row.pn);
  int index = 0;
  for (const ChosenRow& row : rows) {
    window.log.clear();
    window.flow.ChooseFurtherPort(index);
    EXPECT_EQ(window.display.statusTexts.back(), row.text);
    EXPECT_NE(std::find(window.log.begin(), window.log.end(), "name further port " + row.tab),
              window.log.end());
    EXPECT_NE(std::find(window.log.begin(), window.log.end(), "mark port 4"), window.log.end());
    EXPECT_EQ(window.module.SelectedPort, Port(row.pn));
    EXPECT_EQ(window.module.CurrentSlot, 5);
    EXPECT_EQ(window.frontEnd.chosenLine, index);
    EXPECT_EQ(StatusTabOf(window.module, 5).at(0).toStdString(), row.tab);
    ++index;
  }
}

TEST(FurtherPortsTest, AnIndexOutsideTheListIsIgnored) {
  SimulatedWindow window;
  window.module.FurtherPorts = {Port(7)};
  for (const int index : {-1, 1, 512}) window.flow.ChooseFurtherPort(index);
  EXPECT_TRUE(window.log.empty());
  EXPECT_EQ(window.module.CurrentSlot, 1);
}

TEST(FurtherPortsTest, AFurtherPortIsReadLikeAComPort) {
  SimulatedWindow window;
  window.practice.Attach(8193, PortOf("omega"));
  window.flow.ChoosePort(4);
  window.flow.Button(ReadButton);
  EXPECT_TRUE(window.module.Terminals[5].DataRead);
  EXPECT_EQ(window.module.Ports[5].PortText.Trimmed(), u"USB (CTAPI pn=8193)");
  EXPECT_FALSE(window.frontEnd.frames.back().values[0].isEmpty());
}

TEST(FurtherPortsTest, AnotherEntryOfTheListEmptiesTheSlot) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("omega"));
  window.practice.Attach(8193, PortOf("gamma"));
  window.flow.ChoosePort(4);
  window.flow.Button(ReadButton);
  ASSERT_TRUE(window.module.Terminals[5].DataRead);

  window.flow.ChooseFurtherPort(0);
  EXPECT_TRUE(window.module.Terminals[5].DataRead) << "the same entry";

  window.flow.ChooseFurtherPort(1);
  EXPECT_TRUE(window.module.Insured[5].IsEmpty());
  EXPECT_EQ(window.frontEnd.frames.back().values, EmptyDataFrame().values);
  EXPECT_EQ(StatusTabOf(window.module, 5).at(0), u"USB Device 2 (CTAPI pn=8193)");
  for (std::size_t row = 1; row < 7; ++row) {
    EXPECT_EQ(StatusTabOf(window.module, 5).at(row), QString()) << row;
  }
}

TEST(FurtherPortsTest, AChosenOneStaysChosenOverAScanThatFindsItAgain) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("keine-karte"));
  window.practice.Attach(8193, PortOf("omega"));
  window.flow.ChoosePort(4);
  window.flow.ChooseFurtherPort(1);
  ASSERT_EQ(window.module.SelectedPort, Port(8193));
  window.dialogs.answers = {Answer::Cancel};
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.FurtherPort, Port(8193));
  EXPECT_EQ(window.module.SelectedPort, Port(8193));
  EXPECT_EQ(window.frontEnd.chosenLine, 1);
  EXPECT_TRUE(window.module.Terminals[5].DataRead) << "it is the one that is read";
}

// Slot 5 is the current one while a scan puts another port into it.
TEST(FurtherPortsTest, AScanThatDoesNotFindTheChosenOneTakesTheFirst) {
  SimulatedWindow window;
  window.practice.Attach(8193, PortOf("omega"));
  window.flow.ChoosePort(4);
  window.practice = {};
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.FurtherPort, Port(8192));
  EXPECT_EQ(window.module.SelectedPort, Port(8192));
}

}  // namespace
}  // namespace kartocheck::test
