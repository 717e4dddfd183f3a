#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kvk/dispatcher_boxes.h"
#include "kvk/dispatcher_dialogue.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// The select of the KVK application, by every answer.

namespace kartocheck::test {
namespace {

INSTANTIATE_TEST_SUITE_P(
    Select, DispatcherTest,
    testing::ValuesIn(std::vector<DispatcherRow>{
        {.sentence = "transmission error: output medium",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -10"),
         .boxes = {box::OutputMedium},
         .result = ReadOutcome::Failed,
         .displayText = u"LCD-Anzeige/Drucker"},
        {.sentence = "transmission error from a mobile terminal",
         .terminal = {.mobile = true},
         .script = StoredDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -10"),
         .boxes = {box::OutputMedium},
         .result = ReadOutcome::Failed,
         .displayText = u"LCD-Anzeige/Drucker"},
        {.sentence = "invalid parameter",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -1"),
         .boxes = {box::ReturnError},
         .result = ReadOutcome::Failed},
        {.sentence = "terminal error",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -8"),
         .boxes = {box::ReturnError},
         .result = ReadOutcome::Failed},
        {.sentence = "memory error",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -11"),
         .boxes = {box::ReturnError},
         .result = ReadOutcome::Failed},
        {.sentence = "host error",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -127"),
         .boxes = {box::ReturnError},
         .result = ReadOutcome::Failed},
        {.sentence = "HTSI error",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< -> -128"),
         .boxes = {box::ReturnError},
         .result = ReadOutcome::Failed},
        {.sentence = "an answer without status word",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 90"),
         .boxes = {box::ReturnError},
         .result = ReadOutcome::Failed},
        {.sentence = "6985: output medium",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 69 85"),
         .boxes = {box::OutputMedium},
         .result = ReadOutcome::Failed,
         .displayText = u"LCD-Anzeige/Drucker"},
        {.sentence = "6985 from a mobile terminal",
         .terminal = {.mobile = true},
         .script = StoredDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 69 85"),
         .boxes = {box::OutputMedium},
         .result = ReadOutcome::Failed,
         .displayText = u"LCD-Anzeige/Drucker"},
        {.sentence = "6A82, the old identifier is there, try again",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 90 00)"),
         .answers = {Answer::Yes},
         .boxes = {box::OldIdentifier},
         .result = ReadOutcome::TryAgain},
        {.sentence = "6A82, the old identifier is there, no more tries",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 90 00)"),
         .answers = {Answer::No},
         .boxes = {box::OldIdentifier},
         .result = ReadOutcome::Failed},
        {.sentence = "6A82, no identifier, try again",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 6A 82)"),
         .answers = {Answer::Yes},
         .boxes = {box::NoIdentifier},
         .result = ReadOutcome::TryAgain},
        {.sentence = "6A82, no identifier, no more tries",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 6A 82)"),
         .answers = {Answer::No},
         .boxes = {box::NoIdentifier},
         .result = ReadOutcome::Failed},
        {.sentence = "6A82, then another status word",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 69 85)"),
         .answers = {Answer::No},
         .boxes = {box::NoIdentifier},
         .result = ReadOutcome::Failed},
        {.sentence = "6A82, then a failed exchange",
         .script = CardDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < -> -10)"),
         .answers = {Answer::No},
         .boxes = {box::NoIdentifier},
         .result = ReadOutcome::Failed},
        {.sentence = "6A82 from a mobile terminal",
         .terminal = {.mobile = true},
         .script = StoredDialogue(R"(
            > 00 A4 04 00 06 D2 76 00 00 01 01
            < 6A 82
            > 00 A4 04 00 06 D2 80 00 00 01 01
            < 90 00)"),
         .answers = {Answer::No},
         .boxes = {box::OldIdentifier},
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from the second maker: check the mode",
         .terminal = {.manufacturerId = u"NVRHC"},
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 69 00"),
         .boxes = {box::CheckMode},
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from a mobile terminal of the second maker",
         .terminal = {.mobile = true, .manufacturerId = u"NVRHC"},
         .script = StoredDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 69 00"),
         .boxes = {box::CheckMode},
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from the first maker: no box",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 69 00"),
         .result = ReadOutcome::Failed},
        {.sentence = "6900 from a terminal of unknown make: no box",
         .terminal = {.manufacturerId = u""},
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 69 00"),
         .result = ReadOutcome::Failed},
        {.sentence = "any other status word: no box",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 62 83"),
         .result = ReadOutcome::Failed},
        {.sentence = "6282 on the select is another status word",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 62 82"),
         .result = ReadOutcome::Failed},
        {.sentence = "6D00 on the select is another status word",
         .script = CardDialogue("> 00 A4 04 00 06 D2 76 00 00 01 01\n< 6D 00"),
         .result = ReadOutcome::Failed},
    }),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
