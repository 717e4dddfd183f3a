#include "support/dialogue.h"

#include <array>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>

#include "support/answer_book.h"
#include "support/faulty_api.h"
#include "support/kvk_records.h"
#include "support/printing.h"

// The replayed dialogue is what most tests judge by; it must not let anything pass.

namespace kartocheck::test {
namespace {

std::int8_t Exchange(CtApi& api, std::initializer_list<std::uint8_t> command, std::uint8_t dad,
                     QByteArray* answer = nullptr) {
  std::array<std::uint8_t, 300> buffer{};
  std::uint16_t length = buffer.size();
  std::uint8_t sad = 2;
  const auto code =
      api.Data(1, dad, sad, std::span(command.begin(), command.size()), buffer, length);
  if (answer != nullptr) *answer = QByteArray(reinterpret_cast<const char*>(buffer.data()), length);
  return code;
}

TEST(DialogueTest, LeftoverStepsFail) {
  EXPECT_NONFATAL_FAILURE(
      { Dialogue dialogue("open 1"); }, "dialogue ended early; next expected, line 1: open 1");
}

TEST(DialogueTest, CallsBeyondTheEndFail) {
  EXPECT_NONFATAL_FAILURE(
      {
        Dialogue dialogue("");
        (void)dialogue.Close(1);
      },
      "dialogue is over, but came: close");
}

TEST(DialogueTest, ACallOfAnotherKindFails) {
  std::optional<Dialogue> dialogue("close");
  EXPECT_NONFATAL_FAILURE((void)dialogue->Init(1, 1), "expected close, but came: open 1");
  (void)dialogue->Close(1);
}

TEST(DialogueTest, AnotherCommandFails) {
  Dialogue dialogue("> 20 11 00 00 00\n< 95 00");
  EXPECT_NONFATAL_FAILURE((void)Exchange(dialogue, {0x20, 0x13, 0x00, 0x46, 0x00}, 1),
                          "command, line 1");
}

TEST(DialogueTest, ACommandToTheWrongUnitFails) {
  Dialogue dialogue("> 20 11 00 00 00\n< 95 00");
  EXPECT_NONFATAL_FAILURE((void)Exchange(dialogue, {0x20, 0x11, 0x00, 0x00, 0x00}, 0),
                          "addressed unit, line 1");
}

TEST(DialogueTest, AnotherPortFails) {
  Dialogue dialogue("open 1");
  EXPECT_NONFATAL_FAILURE((void)dialogue.Init(1, 2), "port number, line 1");
}

TEST(DialogueTest, RepliesWithTheBytesAndTheCodeOfTheNextLine) {
  Dialogue dialogue("> 00 B0 00 00 00\n< {A} 90 00\n> 00 0E 00 00\n< -> -8");
  QByteArray answer;
  EXPECT_EQ(Exchange(dialogue, {0x00, 0xB0, 0x00, 0x00, 0x00}, 0, &answer), 0);
  EXPECT_EQ(HexOf(answer), QString(SampleRecord(u"A") + u"9000"));
  EXPECT_EQ(Exchange(dialogue, {0x00, 0x0E, 0x00, 0x00}, 0, &answer), -8);
}

TEST(DialogueTest, QuotedTextStandsForItsBytes) {
  Dialogue dialogue("> 20 11\n< 46 05 'DENRV' 90 00");
  QByteArray answer;
  EXPECT_EQ(Exchange(dialogue, {0x20, 0x11}, 1, &answer), 0);
  EXPECT_EQ(HexOf(answer), u"460544454E52569000");
}

TEST(DialogueTest, ALineThatIsNoStepIsRefused) {
  EXPECT_THROW((void)ParseDialogue("> 20 'open end"), std::invalid_argument);
  EXPECT_THROW((void)ParseDialogue("opne 1"), std::invalid_argument);
  EXPECT_THROW((void)ParseDialogue("< 90 00"), std::invalid_argument);
  EXPECT_THROW((void)ParseDialogue("> 20 1"), std::invalid_argument);
  EXPECT_THROW((void)ParseDialogue("> {no such record}"), std::invalid_argument);
}

TEST(AnswerBookTest, AnswersByCommandInWhateverOrder) {
  AnswerBook book("> 20 11\n< 90 00\n> 20 12\n< 90 01\n> 20 11\n< 95 00\n");
  EXPECT_EQ(book.Exchanges(), 3);
  QByteArray answer;
  const auto ask = [&](std::uint8_t instruction) {
    EXPECT_EQ(Exchange(book, {0x20, instruction}, 1, &answer), 0);
    return HexOf(answer);
  };
  EXPECT_EQ(ask(0x12), u"9001");
  EXPECT_EQ(ask(0x11), u"9000");
  EXPECT_EQ(ask(0x11), u"9500");
  EXPECT_EQ(ask(0x11), u"9500");
  EXPECT_EQ(ask(0x99), u"6D00");
}

TEST(FaultyApiTest, OnlyTheNamedExchangeFails) {
  AnswerBook book("> 20 11\n< 90 00");
  FaultyApi api(book, 2, {.kind = Fault::Kind::Code, .code = -10});
  EXPECT_EQ(Exchange(api, {0x20, 0x11}, 1), 0);
  EXPECT_EQ(Exchange(api, {0x20, 0x11}, 1), -10);
  EXPECT_EQ(Exchange(api, {0x20, 0x11}, 1), 0);
  EXPECT_EQ(api.Calls(), (std::vector<QString>{QStringLiteral("2011"), QStringLiteral("2011"),
                                               QStringLiteral("2011")}));
}

TEST(FaultyApiTest, RandomResponsesAreTheSameForTheSameSeed) {
  EXPECT_EQ(RandomResponse(7), RandomResponse(7));
  EXPECT_NE(RandomResponse(7), RandomResponse(8));
}

}  // namespace
}  // namespace kartocheck::test
