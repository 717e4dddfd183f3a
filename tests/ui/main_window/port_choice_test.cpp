#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/printing.h"
#include "ui/main_window/simulated_window.h"
#include "ui/main_window/window_fixture.h"

// The port that is used is the port that is seen; what the status texts leave open is said.

namespace kartocheck::test {
namespace {

bool IsSaid(const SimulatedWindow& window, const std::string& line) {
  return std::find(window.log.begin(), window.log.end(), line) != window.log.end();
}

TEST(PortChoiceTest, AfterAScanTheFirstPortThatAnswersIsChosenWhereTheChosenOneDoesNot) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Cancel};
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.SelectedPort, Port(8192));
  EXPECT_EQ(window.module.CurrentSlot, 5);
  EXPECT_TRUE(IsSaid(window, "mark port 4"));
  EXPECT_TRUE(IsSaid(window, "show status tab 5"));
  EXPECT_EQ(window.display.statusTexts.back(), u"Das USB device 1 wurde ausgewählt");
}

TEST(PortChoiceTest, TheFirstOfSeveralIsChosen) {
  SimulatedWindow window;
  for (const int pn : {3, 4, 8192}) {
    window.practice.Attach(static_cast<std::uint16_t>(pn), PortOf("keine-karte"));
  }
  window.dialogs.answers = {Answer::Cancel, Answer::Cancel, Answer::Cancel};
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.SelectedPort, Port(3));
  EXPECT_EQ(window.display.statusTexts.back(),
            u"Die serielle Schnittstelle COM 3 wurde ausgewählt");
}

TEST(PortChoiceTest, AChosenPortThatAnswersStays) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("keine-karte"));
  window.practice.Attach(2, PortOf("keine-karte"));
  window.flow.ChoosePort(1);
  window.dialogs.answers = {Answer::Cancel, Answer::Cancel};
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.SelectedPort, Port(2));
  EXPECT_EQ(window.display.statusTexts.back(), u"Der MKT Status wird angezeigt");
}

TEST(PortChoiceTest, WhereNothingAnswersNothingChanges) {
  SimulatedWindow window;
  window.flow.ChoosePort(2);
  window.log.clear();
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.module.SelectedPort, Port(3));
  EXPECT_FALSE(IsSaid(window, "mark port 2"));
  EXPECT_EQ(window.display.statusTexts.back(), u"Der MKT Status wird angezeigt");
}

// From plugging in to the data.
TEST(PortChoiceTest, AReadAfterTheScanIsOfThePortThatAnswered) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("keine-karte"));
  window.dialogs.answers = {Answer::Cancel};
  window.flow.Button(ScanButton);
  ASSERT_EQ(window.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(window.dialogs.boxes[0].text.endsWith(u" USB Device 1")) << "no other port is named";
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.Button(ReadButton);
  EXPECT_TRUE(window.module.Terminals[5].DataRead);
  EXPECT_FALSE(window.frontEnd.frames.back().values[0].isEmpty());
}

TEST(PortChoiceTest, TheDiagnosedPortsTabIsInFrontAtTheEnd) {
  SimulatedWindow window;
  window.flow.ChoosePort(2);
  window.dialogs.answers = {Answer::No};
  window.flow.Button(DiagnosisButton);
  EXPECT_EQ(window.view.tabInFront.Value(), 3);
  EXPECT_EQ(window.frontEnd.shownFrames.back(), 2);
}

TEST(PortChoiceTest, AnArrowKeyReachesTheFurtherPortsWithoutASearch) {
  SimulatedWindow window;
  window.practice.Attach(8192, PortOf("omega"));
  window.flow.MoveToPort(4);
  EXPECT_EQ(window.module.CurrentSlot, 5);
  EXPECT_EQ(window.module.SelectedPort, std::nullopt);
  EXPECT_FALSE(IsSaid(window, "search begins"));
  window.flow.ChoosePort(4);
  EXPECT_EQ(window.module.SelectedPort, Port(8192));
}

// Two readers, found by the search.
class TwoReadersTest : public testing::Test {
 protected:
  TwoReadersTest() {
    machine.identifications[8192] = QStringLiteral("Muster Leser 00 00");
    machine.identifications[8193] = QStringLiteral("Muster Leser 01 00");
    window.practice.Attach(8192, PortOf("omega"));
    window.practice.Attach(8193, PortOf("omega"));
    window.flow.ChoosePort(4);
  }

  FakePortDirectory machine;
  SimulatedWindow window{machine};
};

TEST_F(TwoReadersTest, TheListTellsTheDevicesApart) {
  EXPECT_EQ(window.frontEnd.devices, (QStringList{QStringLiteral("Muster Leser 00 00"),
                                                  QStringLiteral("Muster Leser 01 00")}));
}

// A list whose entries changed while one is being chosen would be made anew under the user's hand.
TEST_F(TwoReadersTest, TheListKeepsItsNamesThoughTheLibraryCanTellThemNoMore) {
  const QStringList found = window.frontEnd.devices;
  machine.identifications.clear();
  window.flow.ChooseFurtherPort(1);
  EXPECT_EQ(window.frontEnd.devices, found);
  EXPECT_EQ(StatusTabOf(window.module, 5).back(), QString()) << "what is known now";
}

TEST(PortChoiceTest, TheResultSaysWhyAPortThatMayHoldAReaderDidNotAnswer) {
  FakePortDirectory machine;
  machine.troubles[2] = {.Kind = PortTroubleKind::CardHeld};
  SimulatedWindow window(machine);
  ctapi::SimulatedPort silent = PortOf("gamma");
  silent.InitCode = ctapi::code::TransmissionError;
  window.practice.Attach(2, silent);
  window.practice.Attach(3, silent);
  window.flow.Button(ScanButton);
  const ScanResult& result = window.frontEnd.scanResults.at(0);
  EXPECT_TRUE(result.rows[1].showsKey);
  EXPECT_TRUE(result.rows[1].hint.startsWith(u"Ein anderes Programm benutzt die Karte"));
  EXPECT_TRUE(result.rows[2].showsKey);
  EXPECT_EQ(result.rows[2].hint, QString()) << "nothing is known of it";
}

TEST(EndedSearchTest, EndsAtTheComPortThatIsLookedAt) {
  SimulatedWindow window;
  for (const int pn : {1, 2, 3, 8192}) {
    window.practice.Attach(static_cast<std::uint16_t>(pn), PortOf("keine-karte"));
  }
  window.dialogs.answers = {Answer::Cancel};
  window.eventLoop.onYield = [&] {
    if (window.display.statusTexts.back().endsWith(u"COM 2")) window.flow.EndSearch();
  };
  window.flow.Button(ScanButton);
  EXPECT_TRUE(window.module.Terminals[1].Answered);
  EXPECT_FALSE(window.module.Terminals[2].Answered) << "a check that was broken off tells nothing";
  EXPECT_FALSE(window.module.Ports[2].IsChecked);
  EXPECT_TRUE(window.view.isPortEnabled[2].Value());
  EXPECT_FALSE(window.module.Ports[3].IsChecked);
  EXPECT_TRUE(window.module.FurtherPorts.empty());
  EXPECT_FALSE(window.module.IsLinkOpen());
  EXPECT_EQ(window.log.back(), "action ends");
}

TEST(EndedSearchTest, SaysThatItWasEndedWhereNothingWasFound) {
  SimulatedWindow window;
  window.eventLoop.onYield = [&] { window.flow.EndSearch(); };
  window.flow.Button(ScanButton);
  EXPECT_EQ(window.frontEnd.scanResults.at(0).rows[1].text,
            u"Die Suche wurde beendet, bevor etwas gefunden war.");
}

// A record that is being read may be erased already.
TEST(EndedSearchTest, ARunningReadIsReadToItsEnd) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.practice.Attach(2, PortOf("gamma"));
  window.onCall = [&](const std::string& call) {
    if (call == "status Die Krankenversichertendaten werden gelesen") window.flow.EndSearch();
  };
  window.flow.Button(ScanButton);
  EXPECT_TRUE(window.module.Terminals[1].DataRead);
  EXPECT_FALSE(window.module.Ports[2].IsChecked);
}

TEST(EndedSearchTest, ASearchIsOnlyWhereOneRuns) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.dialogs.answers = {Answer::Yes, Answer::No};
  for (const int button : {ReadButton, DiagnosisButton}) window.flow.Button(button);
  EXPECT_FALSE(IsSaid(window, "search begins"));
  window.flow.Button(ScanButton);
  EXPECT_TRUE(IsSaid(window, "search begins"));
  EXPECT_FALSE(window.view.isSearching.Value());
}

TEST(NoticeTest, ASecondReadSaysThatTheDataAreTheEarlierOnes) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.notice, QString());
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.notice,
            u"Die Daten wurden vorher gelesen. \"Zurücksetzen\" und dann \"Lesen\" liest sie neu.");
  window.flow.Button(ResetButton);
  EXPECT_EQ(window.frontEnd.notice, QString()) << "a notice is about what was done last";
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.notice, QString());
}

TEST(NoticeTest, ACopyOfNothingSaysSo) {
  SimulatedWindow window;
  window.practice.Attach(1, PortOf("gamma"));
  window.flow.Button(CopyButton);
  EXPECT_EQ(window.frontEnd.notice,
            u"Es sind keine Daten gelesen. Kopiert wurden nur leere Zeilen.");
  window.flow.ChoosePort(0);
  EXPECT_EQ(window.frontEnd.notice, QString());
  window.flow.Button(ReadButton);
  window.flow.Button(CopyButton);
  EXPECT_EQ(window.frontEnd.notice, QString());
}

TEST(NoticeTest, ValidationSaysWhenItWorks) {
  SimulatedWindow window;
  window.flow.SetValidation(true);
  EXPECT_EQ(window.frontEnd.notice, u"\"Validierung\" wirkt beim nächsten Lesen.");
}

}  // namespace
}  // namespace kartocheck::test
