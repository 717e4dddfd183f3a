#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/printing.h"
#include "ui/main_window/simulated_window.h"
#include "ui/main_window/window_fixture.h"

// Button 1, button 2 and the port check that ends a diagnosis, on simulated practices.

namespace kartocheck::test {
namespace {

using Lines = std::vector<std::string>;

// The answers that lead to the port check for a fault of the power supply.
const std::deque<Answer> PowerFault{Answer::Yes, Answer::No};

TEST(DiagnosisButtonTest, ATerminalThatIsReadAfterItsPowerFaultWasMended) {
  SimulatedWindow window;
  window.practice.Attach(2, PortOf("gamma"));
  window.flow.ChoosePort(1);
  window.log.clear();
  window.dialogs.answers = PowerFault;
  window.flow.Button(DiagnosisButton);
  EXPECT_EQ(window.log, (Lines{
                            "action starts",
                            "frame 1",
                            "status Überprüft die ausgewählte Schnittstelle im Dialog",
                            "progress 0",
                            "diagnosed port COM 2",
                            "show status tab 2",
                            "step Anschlußkabel",
                            "step Stromversorgung",
                            "status Programm prüft die serielle Schnittstelle COM 2",
                            "progress 25",
                            "frame 0",
                            "slot 2",
                            "enable port 2",
                            "show data",
                            "frame 1",
                            "status Die Krankenversichertendaten lesen",
                            "slot 2",
                            "status Die Krankenversichertendaten werden gelesen",
                            "slot 2",
                            "status Die Krankenversichertendaten werden angezeigt",
                            "status Die Krankenversichertendaten werden angezeigt",
                            "frame 3",
                            "show data",
                            "progress 0",
                            "action ends",
                        }));
  EXPECT_FALSE(window.frontEnd.frames.back().values[0].isEmpty());
}

TEST(DiagnosisButtonTest, APortWithoutATerminalEndsWithTheStatusTabs) {
  SimulatedWindow window;
  window.practice.Attach(1, {});
  window.dialogs.answers = PowerFault;
  window.flow.Button(DiagnosisButton);
  const std::size_t size = window.log.size();
  EXPECT_EQ(Lines(window.log.begin() + 8, window.log.end()),
            (Lines{"status Programm prüft die serielle Schnittstelle COM 1", "progress 25",
                   "frame 0", "slot 1", "enable port 1", "show data", "frame 1",
                   "status Die Krankenversichertendaten werden angezeigt", "frame 2",
                   "status Der MKT Status wird angezeigt", "progress 0", "action ends"}))
      << size;
}

TEST(DiagnosisButtonTest, AnAbsentPortIsDisabled) {
  SimulatedWindow window;
  window.dialogs.answers = PowerFault;
  window.flow.Button(DiagnosisButton);
  EXPECT_EQ(window.frontEnd.enabledPorts, (std::vector<std::pair<int, bool>>{{1, false}}));
}

TEST(DiagnosisButtonTest, AnsweringNoToTheCableEndsWithTheStatusTabsAndNoCheck) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.dialogs.answers = {Answer::No};
  window.flow.Button(DiagnosisButton);
  EXPECT_EQ(
      window.log,
      (Lines{"action starts", "frame 1", "status Überprüft die ausgewählte Schnittstelle im Dialog",
             "progress 0", "diagnosed port COM 1", "show status tab 1", "step Anschlußkabel",
             "frame 2", "status Der MKT Status wird angezeigt", "progress 0", "action ends"}));
  EXPECT_FALSE(window.module.Terminals[1].Answered);
}

TEST(DiagnosisButtonTest, FourTimesYesEndsWithTheStatusTabsAndNoCheck) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.dialogs.answers = {Answer::Yes, Answer::Yes, Answer::Yes, Answer::Yes};
  window.flow.Button(DiagnosisButton);
  EXPECT_EQ(window.dialogs.boxes.size(), 5U);
  EXPECT_EQ(window.dialogs.boxes.back().text, u"Es ist keine weitere Fehlerquelle bekannt.\r\n");
  EXPECT_EQ(window.frontEnd.shownFrames, (std::vector{1, 2}));
  EXPECT_EQ(window.display.statusTexts.back(), u"Der MKT Status wird angezeigt");
  EXPECT_FALSE(window.module.Terminals[1].Answered);
  EXPECT_TRUE(window.frontEnd.slots.empty());
}

// The prompt's text and default are those of the diagnosis.
TEST(DiagnosisButtonTest, AFixedTerminalWithoutACardIsPromptedForWithOkPreselected) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Yes, Answer::No, Answer::Cancel};
  window.flow.Button(DiagnosisButton);
  ASSERT_EQ(window.dialogs.boxes.size(), 4U) << "two questions, an advice, the prompt";
  const ShownBox& prompt = window.dialogs.boxes[3];
  EXPECT_TRUE(prompt.text.endsWith(u" Schnittstelle: \r\n\r\n1) "));
  EXPECT_EQ(prompt.preselected, Answer::Ok);
  EXPECT_EQ(prompt.title, u" KartoCheck ");
  EXPECT_EQ(window.frontEnd.shownFrames.back(), 2) << "nothing was read";
}

TEST(DiagnosisButtonTest, AMobileTerminalIsPromptedForWithCancelPreselected) {
  SimulatedWindow window;
  // A mobile terminal without stored records.
  ctapi::SimulatedPort mobile;
  mobile.Terminal.emplace(ctapi::ProfileOf("vedraF").value());
  window.practice.Attach(3, mobile);
  window.flow.ChoosePort(2);
  window.dialogs.answers = {Answer::Yes, Answer::No, Answer::Cancel};
  window.flow.Button(DiagnosisButton);
  const ShownBox& prompt = window.dialogs.boxes.back();
  EXPECT_TRUE(prompt.text.endsWith(u" Schnittstelle: \r\n\r\n3) "));
  EXPECT_TRUE(prompt.text.contains(u" Ist am Vedra Handy F der PC-Mode auf "));
  EXPECT_EQ(prompt.preselected, Answer::Cancel);
}

// The loop does not check the port again.
TEST(DiagnosisButtonTest, AnotherTryRepeatsStatusCheckAndRead) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Yes, Answer::No, Answer::Ok, Answer::Yes, Answer::Cancel};
  window.flow.Button(DiagnosisButton);
  EXPECT_TRUE(window.dialogs.answers.empty());
  EXPECT_EQ(window.frontEnd.enabledPorts.size(), 1U);
  EXPECT_EQ(std::count(window.display.statusTexts.begin(), window.display.statusTexts.end(),
                       QStringLiteral("Die Krankenversichertendaten lesen")),
            2);
}

// A terminal that answered once and is switched off now.
TEST(DiagnosisButtonTest, AKnownTerminalThatIsGoneBringsTheAdvice) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.flow.Button(ReadButton);
  ASSERT_TRUE(window.module.Terminals[1].Answered);
  window.practice.Attach(1, {});
  window.dialogs.answers = {Answer::Yes, Answer::No, Answer::Cancel};
  window.flow.Button(DiagnosisButton);
  ASSERT_EQ(window.dialogs.boxes.size(), 5U);
  EXPECT_EQ(window.dialogs.boxes[3].text,
            u" Bitte Chipkartenterminal überprüfen! \r\n Ist das Terminal eingeschaltet?! \r\n"
            u" Ist die KeyCard nicht mehr aktiv?! ");
  EXPECT_EQ(window.frontEnd.shownFrames.back(), 2);
  EXPECT_TRUE(window.module.Insured[1].IsEmpty());
}

TEST(DiagnosisButtonTest, AFurtherPortHasNoScanText) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.ChoosePort(4);
  window.log.clear();
  window.dialogs.answers = PowerFault;
  window.flow.Button(DiagnosisButton);
  EXPECT_EQ(window.log.at(4), "diagnosed port USB Device 1");
  EXPECT_EQ(window.log.at(5), "show status tab 5");
  EXPECT_EQ(window.log.at(8), "status ");
  EXPECT_TRUE(window.module.Terminals[5].DataRead);
  EXPECT_EQ(window.frontEnd.shownFrames.back(), 3);
  EXPECT_EQ(window.module.CurrentSlot, 5);
}

TEST(DiagnosisButtonTest, ACloseRequestDuringTheQuestionsEndsWithoutAnotherBox) {
  for (std::size_t question = 1; question <= 4; ++question) {
    SimulatedWindow window;
    window.practice.Attach(1, PortOf("gamma"));
    window.dialogs.answers = {Answer::Yes, Answer::Yes, Answer::Yes, Answer::Yes};
    window.dialogs.onAsk = [&](const Question&) {
      if (window.dialogs.boxes.size() == question) {
        EXPECT_FALSE(window.flow.MayClose(CloseSource::System));
        window.dialogs.answers = {Answer::No};
      }
    };
    window.flow.Button(DiagnosisButton);
    EXPECT_EQ(window.dialogs.boxes.size(), question);
    EXPECT_EQ(window.log.back(), "close window");
    EXPECT_TRUE(window.frontEnd.enabledPorts.empty()) << "no port is checked any more";
  }
}

// A close request that comes with any of the calls: nothing more is asked, the window closes.
TEST(DiagnosisButtonTest, ACloseRequestDuringThePortCheckEndsItsPrompts) {
  std::size_t calls = 1;
  for (std::size_t at = 0; at < calls; ++at) {
    SimulatedWindow window;
    window.practice.Attach(1, PortOf("keine-karte"));
    window.dialogs.answerSafely = true;
    window.dialogs.answers = PowerFault;
    std::size_t boxesAtRequest = 0;
    bool requested = false;
    window.onCall = [&](const std::string& call) {
      if (window.log.size() != at + 1 || call == "action ends") return;
      requested = true;
      boxesAtRequest = window.dialogs.boxes.size();
      EXPECT_FALSE(window.flow.MayClose(CloseSource::User));
    };
    window.flow.Button(DiagnosisButton);
    calls = window.log.size();
    if (!requested) continue;
    EXPECT_EQ(window.dialogs.boxes.size(), boxesAtRequest) << window.log.at(at);
    EXPECT_EQ(window.log.back(), "close window");
    EXPECT_FALSE(window.module.IsLinkOpen());
  }
}

TEST(StatusButtonTest, OpensTheTabOfTheCurrentPort) {
  for (int member = 0; member < 4; ++member) {
    SimulatedWindow window;
    window.flow.ChoosePort(member);
    window.log.clear();
    window.flow.Button(StatusButton);
    EXPECT_EQ(window.log,
              (Lines{"action starts", "frame 2", "show status tab " + std::to_string(member + 1),
                     "status Der MKT Status wird angezeigt", "progress 0", "action ends"}));
  }
}

TEST(StatusTabTest, AClickOnATabSaysThatTheStatusIsShown) {
  SimulatedWindow window;
  window.flow.ChooseStatusTab();
  EXPECT_EQ(window.log, Lines{"status Der MKT Status wird angezeigt"});
}

TEST(StatusTabTest, AClickDuringAnActionKeepsItsStatusText) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.eventLoop.onYield = [&] { window.flow.ChooseStatusTab(); };
  window.flow.Button(ReadButton);
  EXPECT_EQ(
      std::count(window.log.begin(), window.log.end(), "status Der MKT Status wird angezeigt"), 0);
}

TEST(StatusTabTest, TheDeviceIsNamedAsTheSystemNamesIt) {
  SimulatedWindow window;
  ctapi::SimulatedPort port = PortOf("gamma");
  port.DeviceId = "USB VID_FFFE PID_0001 SIM0001";
  window.practice.Attach(3, port);
  EXPECT_EQ(StatusTabOf(window.module, 3).at(7), u"USB VID_FFFE PID_0001 SIM0001");
  EXPECT_EQ(StatusTabOf(window.module, 1).at(7), QString());
}

// The status check finds that the terminal writes to its display; the tab says so although nothing
// is read.
TEST(StatusTabTest, ShowsWhatTheStatusCheckFound) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("ausgabemedium"));
  QString shown;
  window.onCall = [&](const std::string& call) {
    if (call == "slot 1") shown = StatusTabOf(window.module, 1).at(6);
    if (call == "status Die Krankenversichertendaten werden gelesen") {
      EXPECT_EQ(shown, u"LCD-Anzeige/Drucker");
    }
  };
  window.flow.Button(ReadButton);
  EXPECT_EQ(shown, u"LCD-Anzeige/Drucker");
}

}  // namespace
}  // namespace kartocheck::test
