#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kvk/dispatcher_boxes.h"
#include "kvk/dispatcher_dialogue.h"
#include "support/dialogue.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// Opening, reset and card request.

namespace kartocheck::test {
namespace {

TEST_P(DispatcherTest, Dialogue) {
  ExpectOutcome(GetParam());
}

// A stationary and a mobile terminal that answer the card request with SSSS.
constexpr const char* RequestAnswered = R"(
  open 1
  > 20 11 00 00 00
  < RRRR
  > 20 12 01 00 01 01
  < SSSS
  > 20 11 00 00 00
  < RRRR
  close
)";

std::string Filled(std::string script, const std::string& reset, const std::string& word) {
  for (const auto& [name, value] : {std::pair{"RRRR", reset}, std::pair{"SSSS", word}}) {
    for (auto at = script.find(name); at != std::string::npos; at = script.find(name)) {
      script.replace(at, 4, value);
    }
  }
  return script;
}

INSTANTIATE_TEST_SUITE_P(
    Open, DispatcherTest,
    testing::ValuesIn(std::vector<DispatcherRow>{
        {.sentence = "no link, transmission error: is the output medium the display?",
         .script = "open 1 -> -10",
         .boxes = {box::NoLinkOutputMedium},
         .result = ReadOutcome::Failed},
        {.sentence = "no link, invalid parameter",
         .script = "open 1 -> -1",
         .boxes = {box::NoLink},
         .result = ReadOutcome::Failed},
        {.sentence = "no link, terminal error",
         .script = "open 1 -> -8",
         .boxes = {box::NoLink},
         .result = ReadOutcome::Failed},
        {.sentence = "no link, memory error",
         .script = "open 1 -> -11",
         .boxes = {box::NoLink},
         .result = ReadOutcome::Failed},
        {.sentence = "no link, host error, on a USB device",
         .script = "open 8192 -> -127",
         .boxes = {box::NoLink},
         .result = ReadOutcome::Failed,
         .pn = 8192},
        {.sentence = "no link, HTSI error",
         .script = "open 1 -> -128",
         .boxes = {box::NoLink},
         .result = ReadOutcome::Failed},
        {.sentence = "no link with a positive code does not ask for another try",
         .script = "open 1 -> 5",
         .boxes = {box::NoLink},
         .result = ReadOutcome::Failed},
    }),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(
    Request, DispatcherTest,
    testing::ValuesIn(std::vector<DispatcherRow>{
        {.sentence = "6200 from a stationary terminal, try again",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 90 00
            close)",
         .answers = {Answer::Yes},
         .boxes = {box::NoCard},
         .result = ReadOutcome::TryAgain},
        {.sentence = "6200 from a stationary terminal, no more tries",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 90 00
            close)",
         .answers = {Answer::No},
         .boxes = {box::NoCard},
         .result = ReadOutcome::Failed},
        {.sentence = "6200 from a mobile terminal without records",
         .terminal = {.mobile = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .answers = {Answer::Yes},
         .boxes = {box::NoRecord},
         .result = ReadOutcome::TryAgain},
        {.sentence = "6200 from a mobile terminal, no more tries",
         .terminal = {.mobile = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .answers = {Answer::No},
         .boxes = {box::NoRecord},
         .result = ReadOutcome::Failed},
        {.sentence = "6200 from a terminal that the reset alone tells to be mobile",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .answers = {Answer::No},
         .boxes = {box::NoRecord},
         .result = ReadOutcome::Failed},
        {.sentence = "6200 from a mobile terminal with extended records: no box",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 01
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 95 01
            close)",
         .result = ReadOutcome::Failed},
        {.sentence = "6200 from a locked terminal",
         .terminal = {.mobile = true, .selectRefused = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .answers = {Answer::Yes},
         .boxes = {box::NoKeyCard},
         .result = ReadOutcome::TryAgain},
        {.sentence = "6200 from a locked terminal with extended records",
         .terminal = {.mobile = true, .reset9501 = true, .selectRefused = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 01
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 95 01
            close)",
         .answers = {Answer::No},
         .boxes = {box::NoKeyCard},
         .result = ReadOutcome::Failed},
        {.sentence = "6200 from a stationary terminal that refused the select",
         .terminal = {.selectRefused = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 90 00
            close)",
         .answers = {Answer::No},
         .boxes = {box::NoKeyCard},
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from a mobile terminal",
         .terminal = {.mobile = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 00
            > 20 12 01 00 01 01
            < 69 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .answers = {Answer::Yes},
         .boxes = {box::MobileLocked},
         .result = ReadOutcome::TryAgain},
        {.sentence = "6900 from a stationary terminal",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 69 00
            > 20 11 00 00 00
            < 90 00
            close)",
         .answers = {Answer::No},
         .boxes = {box::MenuActive},
         .result = ReadOutcome::Failed},
        {.sentence = "a failed exchange of the card request counts as any other word",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < -> -10
            > 20 11 00 00 00
            < 90 00
            close)",
         .answers = {Answer::No},
         .boxes = {box::NoCard},
         .result = ReadOutcome::Failed},
        {.sentence = "a failed reset at the start and at the end does not stop the call",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < -> -8
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < -> -8
            close -> -1)",
         .answers = {Answer::Yes},
         .boxes = {box::NoCard},
         .result = ReadOutcome::TryAgain},
    }),
    SentenceName());

// Words that have no meaning of their own here, some of them have one elsewhere.
TEST(DispatcherRequestTest, AnyOtherStatusWordMeansNoCard) {
  for (const char* word :
       {"61 10", "62 01 00", "62 82", "62 83", "63 00", "65 01", "67 00", "69 82", "69 85", "6A 82",
        "6B 00", "6D 00", "6E 00", "6F 00", "90 02", "95 00", "95 01", "00 00", "FF FF"}) {
    for (const bool mobile : {false, true}) {
      SCOPED_TRACE(word);
      const std::string script = Filled(RequestAnswered, mobile ? "95 00" : "90 00", word);
      ExpectOutcome({.sentence = word,
                     .terminal = {.mobile = mobile},
                     .script = script,
                     .answers = {Answer::No},
                     .boxes = {box::NoCard},
                     .result = ReadOutcome::Failed});
    }
  }
}

TEST(DispatcherRequestTest, TheResetMarksAMobileTerminalBeforeTheRequest) {
  for (const auto& [answer, mobile] :
       {std::pair{"95 00", true}, std::pair{"90 00", false}, std::pair{"95 01", false},
        std::pair{"62 00", false}, std::pair{"-> -10", false}}) {
    SCOPED_TRACE(answer);
    const std::string script = Filled(RequestAnswered, answer, "67 00");
    Dialogue dialogue(script);
    SlotReading reading(dialogue, {});
    reading.link.dialogs.answers = {Answer::No};
    EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
    EXPECT_EQ(reading.info.Reset95, mobile);
    EXPECT_FALSE(reading.info.Reset9501);
  }
}

TEST(DispatcherRequestTest, ATerminalKnownToBeMobileStaysSo) {
  const std::string script = Filled(RequestAnswered, "-> -10", "67 00");
  Dialogue dialogue(script);
  SlotReading reading(dialogue, {.mobile = true, .reset9501 = true});
  reading.link.dialogs.answers = {Answer::No};
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
  EXPECT_TRUE(reading.info.Reset95);
  EXPECT_TRUE(reading.info.Reset9501);
}

TEST(DispatcherRequestTest, TheQuestionComesBeforeTheLinkIsClosed) {
  const std::string script = Filled(RequestAnswered, "90 00", "62 00");
  Dialogue dialogue(script);
  SlotReading reading(dialogue, {});
  reading.link.dialogs.answers = {Answer::No};
  reading.link.dialogs.onAsk = [&](const Question&) { EXPECT_TRUE(reading.link.session.IsOpen()); };
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
}

TEST(DispatcherRequestTest, TheSlotIsEmptyBeforeTheLinkIsOpened) {
  Dialogue dialogue("open 1 -> -1");
  SlotReading reading(dialogue, {});
  reading.link.eventLoop.onYield = [&] { reading.ExpectEmptySlot(); };
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
  EXPECT_EQ(reading.link.eventLoop.yields, 1);
}

TEST(ClearSlotTest, EmptiesDataAndFlagsAndNothingElse) {
  TerminalInfo info;
  info.ModelName = u"Serie Delta";
  info.Answered = info.Reset95 = info.Reset9501 = info.SelectRefused = true;
  info.DataRead = info.EgkData = true;
  InsuredData insured;
  for (int i = 0; i < ElementCount; ++i) insured[static_cast<Element>(i)] = QStringLiteral("x");
  EgkData egk;
  ClearSlot(info, insured, egk);
  EXPECT_TRUE(insured.IsEmpty());
  EXPECT_TRUE(egk.IsEmpty());
  EXPECT_FALSE(info.DataRead);
  EXPECT_FALSE(info.EgkData);
  EXPECT_EQ(info.ModelName.Trimmed(), u"Serie Delta");
  EXPECT_TRUE(info.Answered && info.Reset95 && info.Reset9501 && info.SelectRefused);
}

}  // namespace
}  // namespace kartocheck::test
