#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/printing.h"
#include "ui/main_window/simulated_window.h"
#include "ui/main_window/window_fixture.h"

// Button 0 on simulated practices.

namespace kartocheck::test {
namespace {

using Lines = std::vector<std::string>;
using Numbers = std::vector<int>;

ctapi::SimulatedPort Empty() {
  return {};
}

ctapi::SimulatedPort LineIn(ctapi::SerialLine::State state) {
  ctapi::SimulatedPort port;
  port.Line = ctapi::SerialLine{.Port = state};
  return port;
}

bool IsOfSweep(const std::string& line) {
  constexpr std::array<const char*, 2> Texts{
      "status Programm prüft die serielle Schnittstelle COM ", "status Programm prüft USB Device "};
  if (line == "progress 0" || line == "progress 100") return false;
  if (line.starts_with("progress ")) return std::stoi(line.substr(9)) % 20 != 0;
  for (const std::string text : Texts) {
    if (!line.starts_with(text)) continue;
    const int number = std::stoi(line.substr(text.size()));
    return text == Texts[1] || number > 4;
  }
  return false;
}

// Without what the sweep over the further ports told, which is tested on its own.
Lines WithoutSweep(const Lines& log) {
  Lines lines;
  std::copy_if(log.begin(), log.end(), std::back_inserter(lines),
               [](const std::string& line) { return !IsOfSweep(line); });
  // A sweep of 512 steps repeats its percentages.
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  return lines;
}

TEST(FullScanTest, WhatIsSaidAndShownInOrder) {
  SimulatedWindow window;
  window.practice.Attach(1, Empty());
  window.practice.Attach(2, PortOf("gamma"));
  window.practice.Attach(4, LineIn(ctapi::SerialLine::State::Failing));
  window.practice.Attach(7, PortOf("kvk-60"));
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.Button(ScanButton);
  const Lines expected{
      "action starts",
      "frame 0",
      "progress 0",
      "search begins",
      "status Programm prüft die serielle Schnittstelle COM 1",
      "progress 20",
      "slot 1",
      "enable port 1",
      "show data",
      "status Programm prüft die serielle Schnittstelle COM 2",
      "progress 40",
      "slot 2",
      "enable port 2",
      "status Die Krankenversichertendaten lesen",
      "slot 2",
      "status Die Krankenversichertendaten werden gelesen",
      "slot 2",
      "status Die Krankenversichertendaten werden angezeigt",
      "status Programm prüft die serielle Schnittstelle COM 3",
      "progress 60",
      "slot 3",
      "disable port 3",
      "hint 3 COM 3: Ist nicht vorhanden bzw. wird vom System benutzt!",
      "status Programm prüft die serielle Schnittstelle COM 4",
      "progress 80",
      "slot 4",
      "disable port 4",
      "hint 4 COM 4: PortOpen Fehlermeldung!!!",
      "progress 80",
      "show port list",
      "name further port weitere ...",
      "slot 5",
      "hint 5 Ein Klick auf \"weitere ...\" (oder die Leertaste) sucht nach weiteren "
      "Schnittstellen.",
      "show port list",
      "name further port COM 7 (CTAPI pn=7)",
      "slot 5",
      "enable port 5",
      "status Die Krankenversichertendaten lesen",
      "slot 5",
      "status Die Krankenversichertendaten werden gelesen",
      "slot 5",
      "status Die Krankenversichertendaten werden angezeigt",
      "no search",
      "progress 100",
      "status Das KartoCheck Ergebnis wird angezeigt",
      "show scan result",
      "mark button 2",
      "frame 2",
      "status Der MKT Status wird angezeigt",
      "frame 3",
      "mark port 1",
      "show data",
      "status Die serielle Schnittstelle COM 2 wurde ausgewählt",
      "status Die Krankenversichertendaten werden angezeigt",
      "progress 0",
      "action ends",
  };
  // Slot 5 is shown twice in a row: named, and checked.
  EXPECT_EQ(WithoutSweep(window.log), expected);
  EXPECT_TRUE(window.dialogs.boxes.empty());
  EXPECT_FALSE(window.module.IsLinkOpen());
}

TEST(FullScanTest, ProgressNeverGoesBackAndMovesDuringTheSweep) {
  SimulatedWindow window;
  window.practice.Attach(8447, PortOf("omega"));
  window.flow.Button(ScanButton);
  const Numbers& progress = window.frontEnd.progress;
  ASSERT_GT(progress.size(), 512U);
  EXPECT_EQ(progress.front(), 0);
  EXPECT_EQ(progress.back(), 0) << "back at the end of the action";
  EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end() - 1));
  EXPECT_EQ(*(progress.end() - 2), 100);
  for (int percent = 80; percent < 100; ++percent) {
    EXPECT_NE(std::find(progress.begin(), progress.end(), percent), progress.end()) << percent;
  }
}

TEST(FullScanTest, AScanOfAnEmptyPracticeShowsTheStatusTabs) {
  SimulatedWindow window;
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.frontEnd.shownFrames, (Numbers{0, 2}));
  EXPECT_EQ(window.display.statusTexts.back(), u"Der MKT Status wird angezeigt");
  ASSERT_EQ(window.frontEnd.scanResults.size(), 1U);
  EXPECT_EQ(window.frontEnd.scanResults[0].rows[1].text, u"Keinen Chipkartenleser gefunden!");
  EXPECT_TRUE(window.frontEnd.scanResults[0].summary.isEmpty());
  EXPECT_EQ(window.frontEnd.enabledPorts,
            (std::vector<std::pair<int, bool>>{{1, false}, {2, false}, {3, false}, {4, false}}))
      << "further ports stay: choosing them searches again";
}

TEST(FullScanTest, EnablesWhatIsPresentAndHasNoError) {
  using State = ctapi::SerialLine::State;
  SimulatedWindow window;
  window.practice.Attach(1, LineIn(State::Failing));
  window.practice.Attach(2, LineIn(State::InUse));
  window.practice.Attach(3, LineIn(State::Absent));
  window.practice.Attach(4, Empty());
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.frontEnd.enabledPorts,
            (std::vector<std::pair<int, bool>>{{1, false}, {2, true}, {3, false}, {4, true}}));
}

// The first of the ports with data, COM 1 first.
TEST(FullScanTest, TheFirstPortThatWasReadIsShown) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  window.practice.Attach(3, PortOf("kvk-60"));
  window.practice.Attach(4, PortOf("gamma"));
  window.dialogs.answers = {Answer::Cancel};
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.CurrentSlot, 3);
  EXPECT_EQ(window.module.SelectedPort, Port(3));
  EXPECT_EQ(window.frontEnd.frames.back().values,
            DataFrameOf(window.module.Terminals[3], window.module.Insured[3]).values);
  EXPECT_FALSE(window.frontEnd.frames.back().values[0].isEmpty());
}

TEST(FullScanTest, WithoutDataOnComPortsTheFurtherPortIsShown) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("omega"));
  window.practice.Attach(8193, PortOf("gamma"));
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.FurtherPorts, (std::vector{Port(8192), Port(8193)}));
  EXPECT_EQ(window.module.FurtherPort, Port(8192)) << "the first one found is looked at";
  EXPECT_EQ(window.module.CurrentSlot, 5);
  EXPECT_EQ(window.module.SelectedPort, Port(8192));
  EXPECT_TRUE(window.module.Terminals[5].DataRead);
  EXPECT_EQ(window.frontEnd.portList,
            (QStringList{QStringLiteral("USB Device 1 (CTAPI pn=8192)"),
                         QStringLiteral("USB Device 2 (CTAPI pn=8193)")}));
  EXPECT_EQ(window.frontEnd.chosenLine, 0);
  EXPECT_EQ(window.frontEnd.scanResults.at(0).summary,
            u"2 Chipkartenleser gefunden.\r\nSiehe Schnittstellen weitere ...");
  const std::vector<QString>& texts = window.display.statusTexts;
  EXPECT_EQ(texts.at(texts.size() - 2), u"Das USB device 1 wurde ausgewählt");
  EXPECT_EQ(texts.back(), u"Die Krankenversichertendaten werden angezeigt");
}

// While a port is looked at, the status bar names it.
TEST(FullScanTest, TheFurtherPortIsNamedWhileItIsChecked) {
  for (const auto& [pn, text] : std::vector<std::pair<int, std::string>>{
           {9, "status Programm prüft die serielle Schnittstelle COM 9"},
           {8195, "status Programm prüft USB Device 4"}}) {
    SimulatedWindow window;
    window.practice.Attach(static_cast<std::uint16_t>(pn), PortOf("omega"));
    window.flow.Button(ScanButton);
    EXPECT_EQ(std::count(window.log.begin(), window.log.end(), text), 2)
        << "once in the sweep, once for the check";
    const auto named = std::find_if(window.log.begin(), window.log.end(), [](const auto& line) {
      return line.starts_with("name further port ") && !line.ends_with("...");
    });
    ASSERT_LT(named, window.log.end() - 2);
    EXPECT_EQ(*(named + 2), text);
  }
}

TEST(FullScanTest, AScanForgetsThatATerminalOnceAnswered) {
  SimulatedWindow window;
  for (int slot = 1; slot <= 4; ++slot) window.module.Terminals[slot].Answered = true;
  window.practice.Attach(1, Empty());
  window.flow.Button(ScanButton);
  for (int slot = 1; slot <= 4; ++slot) EXPECT_FALSE(window.module.Terminals[slot].Answered);
  EXPECT_TRUE(window.dialogs.boxes.empty()) << "no status check, no advice";
}

// A terminal that stands on a further port in the first scan is gone in the second.
TEST(FullScanTest, AFurtherPortThatIsGoneLeavesNothing) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.Button(ScanButton);
  ASSERT_TRUE(window.module.Terminals[5].DataRead);
  window.practice.Detach(8192);
  window.flow.Button(ScanButton);
  EXPECT_EQ(StatusTabOf(window.module, 5), StatusTab{});
  EXPECT_TRUE(window.module.Insured[5].IsEmpty());
  EXPECT_EQ(window.module.FurtherPort, std::nullopt);
  EXPECT_EQ(window.module.SelectedPort, std::nullopt);
  EXPECT_TRUE(window.frontEnd.portList.isEmpty());
  EXPECT_EQ(window.frontEnd.shownFrames.back(), 2) << "nothing was read";
  EXPECT_EQ(window.frontEnd.frames.back().values, EmptyDataFrame().values);
  const auto name = std::find_if(window.log.rbegin(), window.log.rend(), [](const auto& line) {
    return line.starts_with("name further port ");
  });
  EXPECT_EQ(*name, "name further port weitere ...");
  EXPECT_TRUE(window.view.isPortEnabled[5].Value()) << "choosing it searches again";
}

TEST(FullScanTest, ATerminalWithoutACardAsksForOne) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Cancel};
  window.flow.Button(ScanButton);
  ASSERT_EQ(window.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(window.dialogs.boxes[0].text.endsWith(u"\r\n COM  1"));
  EXPECT_EQ(window.dialogs.boxes[0].preselected, Answer::Cancel);
  EXPECT_EQ(std::count(window.display.statusTexts.begin(), window.display.statusTexts.end(),
                       QStringLiteral("Die Krankenversichertendaten werden gelesen")),
            0);
}

TEST(FullScanTest, ACardThatWasInsertedMeanwhileIsRead) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Ok};
  window.dialogs.onAsk = [&](const Question&) { window.practice.Attach(1, PortOf("omega")); };
  window.flow.Button(ScanButton);
  EXPECT_TRUE(window.module.Terminals[1].DataRead);
}

// A terminal that answers the status check with success is read without the insert-card prompt.
TEST(FullScanTest, ACardThatIsReadyIsReadWithoutAPrompt) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.flow.Button(ScanButton);
  EXPECT_TRUE(window.dialogs.boxes.empty());
  EXPECT_TRUE(window.module.Terminals[1].DataRead);
}

// Another try does not check the port again; the prompt comes back.
TEST(FullScanTest, AnotherTryStaysAtThePort) {
  SimulatedWindow window;
  window.practice.Attach(2, PortOf("keine-karte"));
  // The prompt, the read's question for another try, and the prompt again.
  window.dialogs.answers = {Answer::Ok, Answer::Yes, Answer::Cancel};
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.dialogs.boxes.size(), 3U);
  EXPECT_EQ(std::count(window.log.begin(), window.log.end(), "enable port 2"), 1);
}

// A close request that comes with the n-th call of display or front end, for every n.
TEST(FullScanTest, AfterACloseRequestNothingMoreIsAskedAndTheWindowClosesAtTheEnd) {
  std::size_t calls = 1;
  int requests = 0;
  for (std::size_t at = 0; at < calls; at += at < 60 ? 1 : 97) {
    SimulatedWindow window;
    window.practice.Attach(1, PortOf("gamma"));
    window.practice.Attach(2, PortOf("keine-karte"));
    window.practice.Attach(3, PortOf("delta"));
    window.practice.Attach(8192, PortOf("keine-karte"));
    std::size_t boxesAtRequest = 0;
    bool requested = false;
    window.dialogs.answerSafely = true;
    window.onCall = [&](const std::string& call) {
      if (window.log.size() == at + 1 && call != "close window" && call != "action ends") {
        EXPECT_FALSE(window.flow.MayClose(CloseSource::User));
        requested = true;
        boxesAtRequest = window.dialogs.boxes.size();
      }
    };
    window.flow.Button(ScanButton);
    calls = std::max(calls, window.log.size());
    if (!requested) continue;
    ++requests;
    SCOPED_TRACE(window.log.at(at));
    EXPECT_EQ(window.dialogs.boxes.size(), boxesAtRequest);
    EXPECT_EQ(window.log.back(), "close window");
    EXPECT_EQ(std::count(window.log.begin(), window.log.end(), "close window"), 1);
    const bool resultWasOpen =
        std::find(window.log.begin(), window.log.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                  "show scan result") != window.log.begin() + static_cast<std::ptrdiff_t>(at) + 1;
    EXPECT_EQ(window.frontEnd.scanResults.size(), resultWasOpen ? 1U : 0U);
    EXPECT_FALSE(window.module.Busy);
    EXPECT_FALSE(window.module.ExitRequested);
    EXPECT_FALSE(window.module.IsLinkOpen());
    EXPECT_EQ(window.practice.OpenLinks(), 0U);
    const ctapi::SimulatedTerminal* mobile = window.practice.TerminalAt(3);
    ASSERT_NE(mobile, nullptr);
    EXPECT_EQ(mobile->StoredRecords(), 1U) << "nobody agreed to erase it";
  }
  EXPECT_GT(requests, 60);
}

TEST(FullScanTest, ACloseRequestLeavesOutThePortsThatFollow) {
  SimulatedWindow window;
  for (const std::uint16_t pn : std::initializer_list<std::uint16_t>{1, 2, 3}) {
    window.practice.Attach(pn, PortOf("gamma"));
  }
  window.onCall = [&](const std::string& call) {
    if (call.ends_with(" COM 2")) (void)window.flow.MayClose(CloseSource::User);
  };
  window.flow.Button(ScanButton);
  EXPECT_TRUE(window.module.Terminals[2].Answered) << "the check that runs is finished";
  EXPECT_FALSE(window.module.Terminals[3].Answered);
  EXPECT_EQ(std::count(window.log.begin(), window.log.end(),
                       "status Programm prüft die serielle Schnittstelle COM 3"),
            0);
  EXPECT_EQ(window.log.back(), "close window");
}

TEST(FullScanTest, ACloseRequestEndsTheSweep) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("omega"));
  window.onCall = [&](const std::string& call) {
    if (call.ends_with(" COM 20")) (void)window.flow.MayClose(CloseSource::User);
  };
  window.flow.Button(ScanButton);
  EXPECT_EQ(std::count(window.log.begin(), window.log.end(),
                       "status Programm prüft die serielle Schnittstelle COM 21"),
            0);
  EXPECT_EQ(window.log.back(), "close window");
}

TEST(FullScanTest, TheSweepEndsEarlyWithWhatWasFound) {
  SimulatedWindow window;
  window.practice.Attach(6, PortOf("gamma"));
  window.practice.Attach(8192, PortOf("omega"));
  window.onCall = [&](const std::string& call) {
    if (call.ends_with(" COM 20")) window.flow.EndSearch();
  };
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.FurtherPorts, std::vector{Port(6)});
  EXPECT_TRUE(window.module.Terminals[5].DataRead) << "what was found is read";
  EXPECT_EQ(window.frontEnd.scanResults.size(), 1U);
  EXPECT_EQ(window.log.back(), "action ends");
}

// Escape outside a search is no order for the next one.
TEST(FullScanTest, AnEarlierOrderToEndDoesNotEndTheSearch) {
  SimulatedWindow window;
  window.practice.Attach(8447, PortOf("omega"));
  window.flow.EndSearch();
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.FurtherPorts, std::vector{Port(8447)});
}

TEST(FullScanTest, AMobileTerminalIsAskedAboutItsRecord) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("delta"));
  window.dialogs.answers = {Answer::Yes};
  window.flow.Button(ScanButton);
  ASSERT_EQ(window.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(window.dialogs.boxes[0].text.startsWith(u" Achtung, Lesetest"));
  EXPECT_TRUE(window.module.Terminals[1].DataRead);
  EXPECT_EQ(window.practice.TerminalAt(1)->StoredRecords(), 0U);
}

}  // namespace
}  // namespace kartocheck::test
