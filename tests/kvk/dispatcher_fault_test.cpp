#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "kvk/dispatcher_boxes.h"
#include "kvk/dispatcher_dialogue.h"
#include "support/answer_book.h"
#include "support/faulty_api.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// Reads over a link whose n-th exchange fails, for every n and every fault.

namespace kartocheck::test {
namespace {

// What a fault at one of the exchanges leads to.
enum class Effect {
  None,         // the read goes on as if nothing had happened
  NoCard,       // the question for another try
  Select,       // output medium, RETURN error, or nothing, by the fault
  OldSelect,    // no identifier
  SilentEnd,    // no data and no box
  EraseFailed,  // a box, and data only where the terminal has not answered
};

struct FlowRow {
  const char* sentence;
  KnownTerminal terminal{};
  const char* script;
  std::vector<Effect> effects;   // one an exchange
  std::vector<QString> boxes{};  // of the read without a fault
  bool hasData = false;          // of the read without a fault
  int warnedFrom = 0;            // first exchange behind the erase warning, 0: none

  friend std::ostream& operator<<(std::ostream& out, const FlowRow& row) {
    return out << row.sentence;
  }
};

std::vector<QString> BoxesOf(Effect effect, const Fault& fault) {
  switch (effect) {
    case Effect::NoCard:
      return {box::NoCard.text};
    case Effect::OldSelect:
      return {box::NoIdentifier.text};
    case Effect::EraseFailed:
      return {box::EraseError.text};
    case Effect::Select:
      if (fault.kind == Fault::Kind::RandomResponse) return {};
      return {fault.kind == Fault::Kind::Code && fault.code == -10 ? box::OutputMedium.text
                                                                   : box::ReturnError.text};
    case Effect::None:
    case Effect::SilentEnd:
      break;
  }
  return {};
}

class DispatcherFaultTest : public testing::TestWithParam<FlowRow> {
 protected:
  static void Check(int faulty, const Fault& fault) {
    const FlowRow& row = GetParam();
    const auto index = static_cast<std::size_t>(faulty - 1);
    const Effect effect = index < row.effects.size() ? row.effects[index] : Effect::None;

    AnswerBook book(row.script);
    FaultyApi api(book, faulty, fault);
    SlotReading reading(api, row.terminal);
    // Yes to the erase warning, No to another try.
    reading.link.dialogs.answerSafely = true;
    if (row.warnedFrom > 0 && (effect == Effect::None || faulty >= row.warnedFrom)) {
      reading.link.dialogs.answers = {Answer::Yes};
    }
    const ReadOutcome outcome = reading.Read();

    std::vector<QString> boxes;
    if (effect == Effect::None) {
      boxes = row.boxes;
    } else {
      if (row.warnedFrom > 0 && faulty >= row.warnedFrom)
        boxes.push_back(box::EraseKvkWarning.text);
      for (const QString& box : BoxesOf(effect, fault)) boxes.push_back(box);
    }
    EXPECT_EQ(reading.link.dialogs.Texts(), boxes);
    EXPECT_TRUE(reading.link.dialogs.answers.empty());

    // Without an answer the record may be gone from the terminal.
    const bool mayBeGone =
        effect == Effect::EraseFailed && fault.kind != Fault::Kind::RandomResponse;
    const bool hasData = mayBeGone || (effect == Effect::None && row.hasData);
    EXPECT_EQ(outcome, hasData ? ReadOutcome::Done : ReadOutcome::Failed);
    if (hasData) {
      EXPECT_EQ(reading.insured[Element::InsurerName], u"BKK Beispiel Nordwest");
      EXPECT_TRUE(reading.info.DataRead);
      EXPECT_FALSE(reading.info.EgkData);
    } else {
      reading.ExpectEmptySlot();
    }
    ExpectResetAndClose(api, reading);
  }

  static void ExpectResetAndClose(const FaultyApi& api, const SlotReading& reading) {
    const std::vector<QString>& calls = api.Calls();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[calls.size() - 2], u"2011000000");
    EXPECT_EQ(calls.back(), u"close");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), QStringLiteral("close")), 1);
    EXPECT_FALSE(reading.link.session.IsOpen());
  }
};

TEST_P(DispatcherFaultTest, EveryFaultAtEveryExchangeHasItsOutcome) {
  const int exchanges = AnswerBook(GetParam().script).Exchanges();
  ASSERT_EQ(GetParam().effects.size(), static_cast<std::size_t>(exchanges));
  // The last round has no faulty exchange.
  for (int faulty = 1; faulty <= exchanges + 1; ++faulty) {
    for (const Fault& fault : AllFaults()) {
      SCOPED_TRACE("exchange " + std::to_string(faulty) + ", " + fault.Name());
      Check(faulty, fault);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Flow, DispatcherFaultTest,
    testing::ValuesIn(std::vector<FlowRow>{
        {.sentence = "a KVK in a stationary terminal",
         .script = R"(
            open 1
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
            close)",
         .effects = {Effect::None, Effect::NoCard, Effect::None, Effect::Select, Effect::SilentEnd,
                     Effect::None},
         .hasData = true},
        {.sentence = "a stored record in a mobile terminal",
         .terminal = {.mobile = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 00
            > 20 12 01 00 01 01
            < 90 00
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 90 00
            > 20 15 01 01 01 01
            < 90 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .effects = {Effect::None, Effect::NoCard, Effect::Select, Effect::SilentEnd,
                     Effect::EraseFailed, Effect::None, Effect::None},
         .boxes = {box::EraseKvkWarning.text},
         .hasData = true,
         .warnedFrom = 4},
        {.sentence = "a stored record in a mobile terminal with extended records",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 95 01
            > 20 12 01 00 01 01
            < 90 00
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 6D 00
            > 20 11 00 00 00
            < 95 01
            close)",
         .effects = {Effect::None, Effect::NoCard, Effect::Select, Effect::SilentEnd,
                     Effect::EraseFailed, Effect::None},
         .boxes = {box::EraseKvkWarning.text},
         .hasData = true,
         .warnedFrom = 4},
        {.sentence = "a record with a wrong checksum",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 90 00
            > 20 11 01 00
            < 90 00
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B-broken} 90 00
            > 20 11 00 00 00
            < 95 00
            > 20 11 00 00 00
            < 95 00
            close)",
         .effects = {Effect::None, Effect::NoCard, Effect::None, Effect::Select, Effect::SilentEnd,
                     Effect::None, Effect::None},
         .boxes = {box::BadChecksum.text}},
        {.sentence = "a card with the old identifier",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 90 00
            > 20 11 01 00
            < 90 00
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 90 00
            > 20 11 00 00 00
            < 90 00
            close)",
         .effects = {Effect::None, Effect::NoCard, Effect::None, Effect::Select, Effect::OldSelect,
                     Effect::None},
         .boxes = {box::OldIdentifier.text}},
        {.sentence = "a terminal without a card",
         .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 62 00
            > 20 11 00 00 00
            < 90 00
            close)",
         .effects = {Effect::None, Effect::None, Effect::None},
         .boxes = {box::NoCard.text}},
    }),
    SentenceName());

// A mobile terminal that nothing has told to be one, and whose reset fails, is taken for a
// stationary one in this call: its record is read as a card's, and not erased.
TEST(DispatcherFaultTest, AMobileTerminalThatIsNotKnownYetAndDoesNotAnswerTheReset) {
  AnswerBook book(R"(
    > 20 11 00 00 00
    < 95 00
    > 20 12 01 00 01 01
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    > 00 B0 00 00 00
    < {C} 90 00
  )");
  FaultyApi api(book, 1, {.kind = Fault::Kind::Code, .code = -10});
  SlotReading reading(api, {});
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_TRUE(reading.link.dialogs.boxes.empty());
  EXPECT_EQ(std::count(api.Calls().begin(), api.Calls().end(), QStringLiteral("000E0000")), 0);
  EXPECT_EQ(reading.insured[Element::ReadingDate], u"");
}

TEST(DispatcherFaultTest, AFailedCloseChangesNothing) {
  for (const int code : {-1, -8, -10, -11, -127, -128}) {
    AnswerBook book(R"(
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
    )" + std::string("close -> ") +
                    std::to_string(code));
    SlotReading reading(book, {});
    EXPECT_EQ(reading.Read(), ReadOutcome::Done);
    EXPECT_TRUE(reading.info.DataRead);
    EXPECT_FALSE(reading.link.session.IsOpen());
    EXPECT_TRUE(reading.link.dialogs.boxes.empty());
  }
}

}  // namespace
}  // namespace kartocheck::test
