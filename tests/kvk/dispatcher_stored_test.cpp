#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kvk/dispatcher_boxes.h"
#include "kvk/dispatcher_dialogue.h"
#include "support/dialogue.h"
#include "support/kvk_records.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// Reading and erasing the KVK record that a mobile terminal keeps.

namespace kartocheck::test {
namespace {

INSTANTIATE_TEST_SUITE_P(
    Stored, DispatcherTest,
    testing::ValuesIn(std::vector<DispatcherRow>{
        {.sentence = "a stored record: asked, read, erased, ejected",
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
            < 90 01
            > 20 11 00 00 00
            < 95 00
            close)",
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .insurer = u"BKK Beispiel Nordwest",
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a stored record, the file ends, 6282",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 62 82
            > 00 0E 00 00
            < 90 00
            > 20 15 01 01 01 01
            < 90 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .insurer = u"BKK Beispiel Nordwest",
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a terminal that the reset alone tells to be mobile",
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 90 00
            > 20 15 01 01 01 01
            < 90 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .insurer = u"BKK Beispiel Nordwest",
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "No to the warning leaves the record in the terminal",
         .terminal = {.mobile = true},
         .script = StoredDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 90 00"),
         .answers = {Answer::No},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
        {.sentence = "a failed eject does not matter",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 90 00
            > 20 15 01 01 01 01
            < -> -10)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .insurer = u"BKK Beispiel Nordwest",
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a terminal that does not know the erase, 6D00: no eject",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 6D 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .insurer = u"BKK Beispiel Nordwest",
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "the erase is answered with 6900: nothing is kept",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 69 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::EraseError},
         .result = ReadOutcome::Failed,
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "the erase is answered with 6985: nothing is kept",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 69 85)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::EraseError},
         .result = ReadOutcome::Failed,
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "the erase is answered with 6501: nothing is kept",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 65 01)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::EraseError},
         .result = ReadOutcome::Failed,
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "the erase is answered with 9001: nothing is kept",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 90 01)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::EraseError},
         .result = ReadOutcome::Failed,
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "the erase is answered with 6E00: nothing is kept",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < 6E 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::EraseError},
         .result = ReadOutcome::Failed,
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "the erase gets no answer: what was read is kept, it may be all that is left",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {C} 90 00
            > 00 0E 00 00
            < -> -10)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::EraseError},
         .result = ReadOutcome::Done,
         .insurer = u"BKK Beispiel Nordwest",
         .model = u"Serie Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a record with a wrong supplement is not erased",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B} 90 00
            > 20 11 00 00 00
            < 95 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::BadSupplement},
         .result = ReadOutcome::Failed,
         .model = u"Modell Vedra F/Serie Delta/Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a record with a wrong supplement, extended records",
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
            < {B} 90 00
            > 20 11 00 00 00
            < 95 01
            > 20 11 00 00 00
            < 95 01
            close)",
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::BadSupplement},
         .result = ReadOutcome::Failed,
         .displayText = u"PC (ASN-1)"},
        {.sentence = "6501 without extended records: no box",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 65 01)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
        {.sentence = "6501 with extended records",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 65 01)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::NotReleased},
         .result = ReadOutcome::Failed},
        {.sentence = "6900 without extended records: no box",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 69 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
        {.sentence = "6900 with extended records",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 69 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning, box::NotInserted},
         .result = ReadOutcome::Failed},
        {.sentence = "any other status word with extended records: no box",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 69 85)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a stored record with code -1: no box",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -1)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a stored record with code -10: no box",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -10)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a stored record with code -128: no box",
         .terminal = {.mobile = true, .reset9501 = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -128)"),
         .answers = {Answer::Yes},
         .boxes = {box::EraseKvkWarning},
         .result = ReadOutcome::Failed},
    }),
    SentenceName());

// "&", markup and umlauts of a card go into the slot as they are.
TEST(DispatcherKvkTest, AllElementsOfAStoredRecordReachTheSlot) {
  Dialogue dialogue(R"(
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
    close
  )");
  SlotReading reading(dialogue, {.mobile = true});
  reading.link.dialogs.answers = {Answer::Yes};
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_EQ(reading.insured[Element::LastName], u"Übermaß");
  EXPECT_EQ(reading.insured[Element::Title], u"Dr.");
  EXPECT_EQ(reading.insured[Element::ReadingDate], u"05032024");
  EXPECT_EQ(reading.insured[Element::ApprovalNumber], u"109");
  EXPECT_EQ(reading.insured[Element::ChecksumSupplement], u"A0");
}

TEST(DispatcherKvkTest, TheWarningSaysThatYesErasesARecord) {
  Dialogue dialogue(R"(
    open 1
    > 20 11 00 00 00
    < 95 00
    > 20 12 01 00 01 01
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    > 20 11 00 00 00
    < 95 00
    close
  )");
  SlotReading reading(dialogue, {.mobile = true});
  reading.link.dialogs.answers = {Answer::No};
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
  ASSERT_EQ(reading.link.dialogs.boxes.size(), 1U);
  EXPECT_EQ(reading.link.dialogs.boxes.front().consequence, Consequence::ErasesRecord);
}

TEST(DispatcherKvkTest, ARetryQuestionErasesNothing) {
  Dialogue dialogue(R"(
    open 1
    > 20 11 00 00 00
    < 95 00
    > 20 12 01 00 01 01
    < 62 00
    > 20 11 00 00 00
    < 95 00
    close
  )");
  SlotReading reading(dialogue, {.mobile = true});
  reading.link.dialogs.answers = {Answer::Yes};
  EXPECT_EQ(reading.Read(), ReadOutcome::TryAgain);
  EXPECT_EQ(reading.link.dialogs.boxes.front().consequence, Consequence::None);
}

// Data in the fixed format, but of a length that it does not have: a good read without data.
TEST(DispatcherKvkTest, TheModelIsCorrectedByThePortOfTheLink) {
  const std::string record =
      SampleRecord(u"B").toStdString() + Supplement({{0x92, "103"}}).toStdString();
  const std::string script = R"(
    open 8200
    > 20 11 00 00 00
    < 95 00
    > 20 12 01 00 01 01
    < 90 00
    > 00 A4 04 00 06 D2 76 00 00 01 01
    < 90 00
    > 00 B0 00 00 00
    < )" + record + R"( 90 00
    > 00 0E 00 00
    < 90 00
    > 20 15 01 01 01 01
    < 90 00
    > 20 11 00 00 00
    < 95 00
    close
  )";
  Dialogue dialogue(script);
  SlotReading reading(dialogue, {.mobile = true}, 8200);
  reading.link.dialogs.answers = {Answer::Yes};
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_EQ(reading.info.ModelName.Trimmed(), u"Serie Delta");
  EXPECT_EQ(reading.info.ProductCode, u"PKTD ");
}

}  // namespace
}  // namespace kartocheck::test
