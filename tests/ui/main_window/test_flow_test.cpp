#include "ui/main_window/test_flow.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/answer_book.h"
#include "support/dialogue.h"
#include "support/fake_api.h"
#include "support/faulty_api.h"
#include "support/printing.h"
#include "ui/main_window/window_fixture.h"

// The buttons.

namespace kartocheck::test {
namespace {

using Calls = std::vector<std::string>;
using Numbers = std::vector<int>;

const QString Prompting = QStringLiteral("Die Krankenversichertendaten lesen");
const QString Reading = QStringLiteral("Die Krankenversichertendaten werden gelesen");
const QString Shown = QStringLiteral("Die Krankenversichertendaten werden angezeigt");

// The check of a port with a Serie Omega on it.
std::string Check(int pn) {
  return "open " + std::to_string(pn) + R"(
    > 20 13 00 81 00
    < 90 00
    > 20 13 00 46 00
    < 46 0F 'DENRVPKTO 1.002' 90 00
    > 20 71 00 01 00
    < 6D 00
    close
  )";
}
// The status check finds a card, and it is read.
std::string ReadsRecordB(int pn) {
  const std::string open = "open " + std::to_string(pn);
  return open + R"(
    > 20 12 01 00 01 01
    < 62 01
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    close
  )" + open +
         R"(
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
}
// The status check finds no card, the user is asked for one and says OK, and the read finds none.
std::string FindsNoCard(int pn) {
  const std::string open = "open " + std::to_string(pn);
  return open + R"(
    > 20 12 01 00 01 01
    < 62 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 69 85
    close
  )" + open +
         R"(
    > 20 11 00 00 00
    < 90 00
    > 20 12 01 00 01 01
    < 62 00
    > 20 11 00 00 00
    < 90 00
    close
  )";
}

void FillSlot(Window& window, int slot) {
  for (int i = 0; i < ElementCount; ++i) {
    window.module.Insured[slot][static_cast<Element>(i)] = QStringLiteral("element %1").arg(i);
  }
  window.module.Terminals[slot].Answered = true;
  window.module.Terminals[slot].DataRead = true;
}

TEST(ReadButtonTest, ChecksReadsAndShowsTheSelectedPort) {
  Dialogue dialogue(Check(2) + ReadsRecordB(2));
  Window window(dialogue);
  window.module.SelectedPort = Port(2);
  window.module.CurrentSlot = 2;
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.shownFrames, Numbers{3});
  EXPECT_EQ(window.frontEnd.progress, (Numbers{0, 50, 100, 0}));
  EXPECT_EQ(window.display.statusTexts, (std::vector{Prompting, Reading, Shown, Shown}));
  EXPECT_EQ(window.frontEnd.slots, (Numbers{2, 2, 2}))
      << "after the check, after the status check and after the read";
  EXPECT_EQ(window.frontEnd.calls,
            (Calls{"action starts", "show data", "show data", "action ends"}));
  ASSERT_EQ(window.frontEnd.frames.size(), 2U);
  EXPECT_EQ(window.frontEnd.frames[0].title, u"Krankenversicherten Kartendaten");
  EXPECT_EQ(window.frontEnd.frames[0].values[9], QString()) << "the check has emptied the slot";
  EXPECT_EQ(window.frontEnd.frames[1].title, u"Krankenversicherten Kartendaten(Karte)");
  EXPECT_EQ(window.frontEnd.frames[1].values[9], u"Übermaß");
  EXPECT_TRUE(window.dialogs.boxes.empty());
  EXPECT_FALSE(window.module.Busy);
}

TEST(ReadButtonTest, DataThatWereReadAlreadyAreShownWithoutAnotherRead) {
  Dialogue dialogue("");
  Window window(dialogue);
  FillSlot(window, 1);
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.progress, (Numbers{0, 100, 0}));
  EXPECT_EQ(window.display.statusTexts, std::vector{Shown});
  ASSERT_EQ(window.frontEnd.frames.size(), 1U);
  EXPECT_EQ(window.frontEnd.frames[0].values[0], u"element 0");
}

// An eGK that gives its serial number away and nothing else.
std::string ReadsSerialNumberAlone(int pn) {
  const std::string open = "open " + std::to_string(pn);
  std::string script = open + R"(
    > 20 12 01 00 01 01
    < 90 01
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 6A 82
    close
  )" + open + R"(
    > 20 11 00 00 00
    < 90 00
    > 20 12 01 00 01 01
    < 90 01
    > 20 11 01 00
    < 90 01
    > 00 B0 82 00 00
    < 5A 0A 80 27 60 01 23 00 00 00 00 17 90 00
  )";
  for (int section = 0; section < 4; ++section) {
    script += R"(
    > 00 A4 04 0C 06 D2 76 00 00 01 02
    < 62 83
    )";
  }
  return script + R"(
    > 20 11 00 00 00
    < 90 00
    close
  )";
}

TEST(ReadButtonTest, AnEgkThatGaveNothingButItsSerialNumberIsReadAgain) {
  Dialogue dialogue(Check(1) + ReadsSerialNumberAlone(1) + Check(1) + ReadsRecordB(1));
  Window window(dialogue);
  window.flow.Button(ReadButton);
  EXPECT_FALSE(window.module.Terminals[1].DataRead);
  EXPECT_EQ(window.module.Egk[1].iccsn, u"80276001230000000017");
  EXPECT_EQ(window.frontEnd.frames.back().title, u"Krankenversicherten Kartendaten");
  window.flow.Button(ReadButton);
  EXPECT_TRUE(window.module.Terminals[1].DataRead);
  EXPECT_EQ(window.module.Egk[1].iccsn, u"");
  EXPECT_EQ(window.frontEnd.frames.back().values[9], u"Übermaß");
}

TEST(ReadButtonTest, YesToAnotherTryChecksAndReadsAgain) {
  Dialogue dialogue(Check(1) + FindsNoCard(1) + Check(1) + FindsNoCard(1) + Check(1) +
                    ReadsRecordB(1));
  Window window(dialogue);
  window.dialogs.answers = {Answer::Ok, Answer::Yes, Answer::Ok, Answer::Yes};
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.progress, (Numbers{0, 50, 50, 50, 100, 0}));
  EXPECT_EQ(window.display.statusTexts, (std::vector{Prompting, Reading, Shown, Prompting, Reading,
                                                     Shown, Prompting, Reading, Shown, Shown}));
  EXPECT_EQ(window.frontEnd.frames.back().values[9], u"Übermaß");
}

TEST(ReadButtonTest, NoToAnotherTryEndsWithAnEmptyFrame) {
  Dialogue dialogue(Check(1) + FindsNoCard(1));
  Window window(dialogue);
  window.dialogs.answers = {Answer::Ok, Answer::No};
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.progress, (Numbers{0, 50, 100, 0}));
  const DataFrame& frame = window.frontEnd.frames.back();
  EXPECT_EQ(frame.title, u"Krankenversicherten Kartendaten");
  for (const QString& value : frame.values) EXPECT_EQ(value, QString());
}

TEST(ReadButtonTest, AFailedReadShowsNothingOfAnEarlierPerson) {
  Dialogue dialogue(Check(1) + "open 1 -> -127\nopen 1 -> -127");
  Window window(dialogue);
  window.dialogs.answers = {Answer::Ok};
  FillSlot(window, 1);
  window.module.Terminals[1].DataRead = false;
  window.flow.Button(ReadButton);
  for (const DataFrame& frame : window.frontEnd.frames) {
    for (const QString& value : frame.values) EXPECT_EQ(value, QString());
  }
  EXPECT_TRUE(window.module.Insured[1].IsEmpty());
}

TEST(ReadButtonTest, AnotherTerminalOnThePortInheritsNothing) {
  // A mobile terminal with extended records was there; now there is a stationary one without card.
  Dialogue dialogue(Check(1) + FindsNoCard(1));
  Window window(dialogue);
  TerminalInfo& info = window.module.Terminals[1];
  info.Reset95 = info.Reset9501 = info.SelectRefused = true;
  window.dialogs.answers = {Answer::Ok, Answer::No};
  window.flow.Button(ReadButton);
  EXPECT_EQ(
      window.dialogs.Texts(),
      (std::vector{QStringLiteral(" Bitte eine Krankenversichertenkarte in \r\n"
                                  " Kartenkontaktiereinheit 1 einführen. \r\n\r\n"
                                  " Das Chipkartenterminal verwendet die Schnittstelle: \r\n\r\n"
                                  " COM  1"),
                   QStringLiteral(" Keine Chipkarte gefunden! \r\n Noch einmal versuchen? ")}));
}

TEST(ReadButtonTest, AFurtherPortIsReadByItsNumberIntoSlotFive) {
  Dialogue dialogue(Check(8193) + ReadsRecordB(8193));
  Window window(dialogue);
  window.module.SelectedPort = Port(8193);
  window.module.CurrentSlot = 5;
  window.flow.Button(ReadButton);
  EXPECT_EQ(window.frontEnd.frames.back().values[9], u"Übermaß");
  EXPECT_TRUE(window.module.Terminals[5].DataRead);
}

// The whole action over a link whose n-th exchange fails. The first three are the port check's,
// the next two the status check's.
TEST(ReadButtonTest, EveryFaultAtEveryExchangeEndsWithAPersonOrWithNothing) {
  const std::string script = Check(1) + ReadsRecordB(1);
  const int exchanges = AnswerBook(script).Exchanges();
  ASSERT_EQ(exchanges, 11);
  for (int faulty = 1; faulty <= exchanges + 1; ++faulty) {
    for (const Fault& fault : AllFaults()) {
      SCOPED_TRACE("exchange " + std::to_string(faulty) + ", " + fault.Name());
      AnswerBook book(script);
      FaultyApi api(book, faulty, fault);
      Window window(api);
      FillSlot(window, 1);
      window.module.Terminals[1].DataRead = false;
      window.dialogs.answerSafely = true;
      window.flow.Button(ReadButton);

      // Without an answer to the status check's card request the user is asked for a card, and
      // cancels. Card request, select and read are what a read cannot do without.
      const bool isRead = faulty != 4;
      const bool hasData = isRead && faulty != 7 && faulty != 9 && faulty != 10;
      EXPECT_EQ(window.module.Terminals[1].DataRead, hasData);
      EXPECT_EQ(window.frontEnd.frames.back().values[9],
                hasData ? QStringLiteral("Übermaß") : QString());
      for (const DataFrame& frame : window.frontEnd.frames) {
        for (const QString& value : frame.values) EXPECT_FALSE(value.startsWith(u"element"));
      }
      const std::vector<QString>& calls = api.Calls();
      EXPECT_EQ(calls.at(calls.size() - 2), isRead ? u"2011000000" : u"201201000101");
      EXPECT_EQ(calls.back(), u"close");
      EXPECT_EQ(std::count(calls.begin(), calls.end(), QStringLiteral("close")), isRead ? 3 : 2);
      EXPECT_FALSE(window.module.IsLinkOpen());
      EXPECT_EQ(window.frontEnd.calls.back(), "action ends");
    }
  }
}

TEST(CopyButtonTest, CopiesTheDataOfTheCurrentPort) {
  FakeApi api;
  Window window(api);
  FillSlot(window, 3);
  window.module.CurrentSlot = 3;
  window.flow.Button(CopyButton);
  EXPECT_EQ(window.display.statusTexts,
            std::vector{QStringLiteral(
                "Die Krankenversichertendaten wurden in die Zwischenablage kopiert")});
  ASSERT_EQ(window.frontEnd.clipboard.size(), 1U);
  EXPECT_EQ(window.frontEnd.clipboard[0],
            ClipboardText(window.module.Terminals[3], window.module.Insured[3]));
  EXPECT_TRUE(window.frontEnd.shownFrames.empty()) << "the frame stays";
}

TEST(CopyButtonTest, AMobileTerminalsDataHaveTwoLinesMore) {
  FakeApi api;
  Window window(api);
  FillSlot(window, 1);
  window.module.Terminals[1].Reset95 = true;
  window.flow.Button(CopyButton);
  EXPECT_TRUE(window.frontEnd.clipboard.at(0).endsWith(
      window.module.Insured[1][Element::ApprovalNumber] + u"\r\n"));
}

TEST(CopyButtonTest, AnEmptySlotGivesEmptyLines) {
  FakeApi api;
  Window window(api);
  window.flow.Button(CopyButton);
  EXPECT_EQ(window.frontEnd.clipboard.at(0), ClipboardText({}, {}));
}

TEST(ResetButtonTest, EmptiesFrameAndSlotSoThatButtonThreeReadsAgain) {
  Dialogue dialogue(Check(1) + ReadsRecordB(1));
  Window window(dialogue);
  FillSlot(window, 1);
  FillSlot(window, 2);
  window.flow.Button(ResetButton);
  EXPECT_EQ(window.display.statusTexts,
            std::vector{QStringLiteral("Die Anzeigefelder wurden zurückgesetzt")});
  EXPECT_EQ(window.frontEnd.calls, (Calls{"action starts", "show data", "action ends"}));
  EXPECT_TRUE(window.module.Insured[1].IsEmpty());
  EXPECT_FALSE(window.module.Terminals[1].DataRead);
  EXPECT_TRUE(window.module.Terminals[1].Answered);
  EXPECT_FALSE(window.module.Insured[2].IsEmpty());
  EXPECT_TRUE(window.module.Terminals[2].DataRead);
  EXPECT_TRUE(window.frontEnd.shownFrames.empty());

  window.flow.Button(ReadButton);
  EXPECT_TRUE(window.module.Terminals[1].DataRead);
}

TEST(ScanPortTest, ReadsWhereATerminalAnswers) {
  Dialogue dialogue(Check(3) + ReadsRecordB(3));
  Window window(dialogue);
  window.ports.Scan(Port(3));
  EXPECT_EQ(window.module.Insured[3][Element::LastName], u"Übermaß");
  EXPECT_EQ(window.display.statusTexts,
            (std::vector{QStringLiteral("Programm prüft die serielle Schnittstelle COM 3"),
                         Prompting, Reading, Shown}));
  EXPECT_EQ(window.frontEnd.progress, Numbers{20});
  EXPECT_TRUE(window.frontEnd.shownFrames.empty());
}

TEST(ScanPortTest, AnotherTryDoesNotCheckThePortAgain) {
  Dialogue dialogue(Check(3) + FindsNoCard(3) + ReadsRecordB(3));
  Window window(dialogue);
  window.dialogs.answers = {Answer::Ok, Answer::Yes};
  window.ports.Scan(Port(3));
  EXPECT_TRUE(window.module.Terminals[3].DataRead);
}

TEST(ScanPortTest, ReadsNothingWhereNoTerminalAnswers) {
  for (const char* script : {"open 3 -> -10", "open 3\n> 20 13 00 81 00\n< -> -10\nclose",
                             "open 3\n> 20 13 00 81 00\n< 6E 00\nclose"}) {
    Dialogue dialogue(script);
    Window window(dialogue);
    window.ports.Scan(Port(3));
    EXPECT_EQ(window.display.statusTexts,
              std::vector{QStringLiteral("Programm prüft die serielle Schnittstelle COM 3")});
    EXPECT_EQ(window.frontEnd.slots, Numbers{3});
  }
}

TEST(ButtonTest, TheFirstFourShowTheFrameOfTheirIndex) {
  for (const int index : {0, 1, 2, 3}) {
    FakeApi api;
    api.init = [](auto, auto) -> std::int8_t { return -10; };
    Window window(api);
    window.dialogs.answerSafely = true;
    window.flow.Button(index);
    EXPECT_EQ(window.frontEnd.shownFrames.at(0), index);
  }
}

TEST(ButtonTest, ButtonTwoSaysThatTheStatusIsShown) {
  FakeApi api;
  Window window(api);
  window.flow.Button(2);
  EXPECT_EQ(window.display.statusTexts,
            std::vector{QStringLiteral("Der MKT Status wird angezeigt")});
}

TEST(ButtonTest, AnIndexOutsideZeroToFiveDoesNothing) {
  for (const int index : {-1, 6, 100, -1000}) {
    FakeApi api;
    Window window(api);
    window.flow.Button(index);
    EXPECT_TRUE(window.frontEnd.shownFrames.empty());
    EXPECT_TRUE(window.display.statusTexts.empty());
    EXPECT_TRUE(window.frontEnd.progress.empty());
    EXPECT_TRUE(window.dialogs.boxes.empty());
    EXPECT_EQ(window.frontEnd.calls, (Calls{"action starts", "action ends"}));
    EXPECT_FALSE(window.module.Busy);
  }
}

TEST(ButtonTest, AClickDuringAnActionDoesNothing) {
  Dialogue dialogue(Check(1) + ReadsRecordB(1));
  Window window(dialogue);
  int clicks = 0;
  window.eventLoop.onYield = [&] {
    EXPECT_TRUE(window.module.Busy);
    for (int index = 0; index <= 5; ++index) window.flow.Button(index);
    ++clicks;
  };
  window.flow.Button(ReadButton);
  EXPECT_GT(clicks, 0);
  EXPECT_EQ(window.frontEnd.shownFrames, Numbers{3});
  EXPECT_TRUE(window.frontEnd.clipboard.empty());
  EXPECT_EQ(window.frontEnd.calls,
            (Calls{"action starts", "show data", "show data", "action ends"}));
}

TEST(ButtonTest, ALinkLeftOpenIsClosedBeforeTheControlsComeBack) {
  FakeApi api;
  api.data = [](auto&, auto&, auto, auto, auto&) -> std::int8_t {
    throw std::runtime_error("anything");
  };
  Window window(api);
  // In a test the end of the program leaves the link as it is.
  EXPECT_THROW(window.flow.Button(ReadButton), Terminated);
  ASSERT_TRUE(window.module.IsLinkOpen());
  int closes = 0;
  api.close = [&](auto) -> std::int8_t { return ++closes, 0; };
  window.frontEnd.onCall = [&](const std::string& call) {
    if (call != "action ends") return;
    EXPECT_EQ(closes, 1);
    EXPECT_TRUE(window.module.Busy);
  };
  window.flow.Button(CopyButton);
  EXPECT_FALSE(window.module.IsLinkOpen());
  EXPECT_EQ(closes, 1);
}

TEST(ButtonTest, TheControlsComeBackWhenTheProgramEndsInTheMiddle) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t {
    throw LibraryNotFound({LibraryFaultKind::FileMissing});
  };
  Window window(api);
  EXPECT_THROW(window.flow.Button(ReadButton), Terminated);
  EXPECT_FALSE(window.module.Busy);
  EXPECT_EQ(window.frontEnd.calls.back(), "action ends");
}

}  // namespace
}  // namespace kartocheck::test
