#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kvk/dispatcher_boxes.h"
#include "kvk/dispatcher_dialogue.h"
#include "support/dialogue.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// Reading the KVK in a stationary terminal.

namespace kartocheck::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Card, DispatcherTest,
                         testing::ValuesIn(std::vector<DispatcherRow>{
                             {.sentence = "a KVK from its card, 9000",
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
                              .insurer = u"BKK Beispiel Nordwest",
                              .displayText = u"PC (ASN-1)"},
                             {.sentence = "a KVK from its card on a USB device",
                              .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {A} 90 00)",
                                                     8192),
                              .insurer = u"AOK Süd",
                              .displayText = u"PC (ASN-1)",
                              .pn = 8192},
                             {.sentence = "a card that was in the terminal already, 6201",
                              .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 62 01
            > 20 11 01 00
            < 90 00
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B} 90 00
            > 20 11 00 00 00
            < 90 00
            close)",
                              .insurer = u"BKK Beispiel Nordwest",
                              .displayText = u"PC (ASN-1)"},
                             {.sentence = "the file ends before the length asked for, 6282",
                              .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {A} 62 82)"),
                              .insurer = u"AOK Süd",
                              .displayText = u"PC (ASN-1)"},
                             {.sentence = "a failed reset of the card does not matter",
                              .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 90 00
            > 20 11 01 00
            < -> -10
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B} 90 00
            > 20 11 00 00 00
            < 90 00
            close)",
                              .insurer = u"BKK Beispiel Nordwest",
                              .displayText = u"PC (ASN-1)"},
                             {.sentence = "a refused reset of the card does not matter",
                              .script = R"(
            open 1
            > 20 11 00 00 00
            < 90 00
            > 20 12 01 00 01 01
            < 90 00
            > 20 11 01 00
            < 6F 00
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B} 90 00
            > 20 11 00 00 00
            < 90 00
            close)",
                              .insurer = u"BKK Beispiel Nordwest",
                              .displayText = u"PC (ASN-1)"},
                             {.sentence = "a failed closing reset does not matter",
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
            < -> -8
            close)",
                              .insurer = u"BKK Beispiel Nordwest",
                              .displayText = u"PC (ASN-1)"},
                             {.sentence = "data of the select answer are not looked at",
                              .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82 90 00
            > 00 B0 00 00 00
            < {B} 90 00)"),
                              .insurer = u"BKK Beispiel Nordwest",
                              .displayText = u"PC (ASN-1)"},
                         }),
                         SentenceName());

INSTANTIATE_TEST_SUITE_P(
    Read, DispatcherTest,
    testing::ValuesIn(std::vector<DispatcherRow>{
        {.sentence = "a failed read of a card with code -1: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -1)"),
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a card with code -8: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -8)"),
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a card with code -10: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -10)"),
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a card with code -11: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -11)"),
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a card with code -127: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -127)"),
         .result = ReadOutcome::Failed},
        {.sentence = "a failed read of a card with code -128: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < -> -128)"),
         .result = ReadOutcome::Failed},
        {.sentence = "6501 from a stationary terminal: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 65 01)"),
         .result = ReadOutcome::Failed},
        {.sentence = "6501 from a stationary terminal, extended records known of before: no box",
         .terminal = {.reset9501 = true},
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 65 01)"),
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from a stationary terminal: no box",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 69 00)"),
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from a stationary terminal, extended records known of before: no box",
         .terminal = {.reset9501 = true},
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 69 00)"),
         .result = ReadOutcome::Failed},
        {.sentence = "data in front of another status word do not count",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B} 62 81)"),
         .result = ReadOutcome::Failed},
        {.sentence = "a record with a wrong checksum is reported, then the terminal reset",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B-broken} 90 00
            > 20 11 00 00 00
            < 90 00)"),
         .boxes = {box::BadChecksum},
         .result = ReadOutcome::Failed,
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a wrong checksum, and the reset is answered as by a mobile terminal",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B-broken} 90 00
            > 20 11 00 00 00
            < 95 00)"),
         .boxes = {box::BadChecksum},
         .result = ReadOutcome::Failed,
         .model = u"Modell Vedra F/Serie Delta/Sigma",
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a wrong checksum, and the reset is answered with 9501",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B-broken} 90 00
            > 20 11 00 00 00
            < 95 01)"),
         .boxes = {box::BadChecksum},
         .result = ReadOutcome::Failed,
         .displayText = u"PC (ASN-1)"},
        {.sentence = "a wrong checksum, and the reset fails",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < {B-broken} 90 00
            > 20 11 00 00 00
            < -> -10)"),
         .boxes = {box::BadChecksum},
         .result = ReadOutcome::Failed,
         .displayText = u"PC (ASN-1)"},
        {.sentence = "no KVK data at all",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < 90 00
            > 20 11 00 00 00
            < 90 00)"),
         .boxes = {box::NoKvk},
         .result = ReadOutcome::Failed},
        {.sentence = "52 bytes are no KVK",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 90 00
            > 00 B0 00 00 00
            < '....................................................' 90 00
            > 20 11 00 00 00
            < 90 00)"),
         .boxes = {box::NoKvk},
         .result = ReadOutcome::Failed},
    }),
    SentenceName());

TEST(DispatcherKvkTest, AReadThatBringsNoElementIsNoDataRead) {
  const std::string script = R"(
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
    < ')" + std::string(150, 'x') +
                             R"(' 90 00
    > 20 11 00 00 00
    < 90 00
    close
  )";
  Dialogue dialogue(script);
  SlotReading reading(dialogue, {});
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  reading.ExpectEmptySlot();
  EXPECT_TRUE(reading.link.dialogs.boxes.empty());
}

}  // namespace
}  // namespace kartocheck::test
