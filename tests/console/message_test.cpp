#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "console/console_fixture.h"

// What is written beside the report.

namespace kartocheck::test {
namespace {

const QString LongText = QStringLiteral("Die Krankenversichertendaten werden gelesen");

class TerminalTest : public testing::Test {
 protected:
  std::ostringstream out;
  std::optional<int> columns;
  ConsoleFrontEnd frontEnd{
      out,
      {.statusLine = StatusLine::Overwritten, .columns = [this] { return columns; }},
      StoredRecords::Keep};
};

TEST_F(TerminalTest, AStatusTextLeavesTheLastColumnFree) {
  columns = 10;
  frontEnd.ShowStatusText(LongText);
  EXPECT_EQ(out.str(), "\rDie Krank");
}

TEST_F(TerminalTest, AShorterTextCoversWhatWasCut) {
  columns = 10;
  frontEnd.ShowStatusText(LongText);
  frontEnd.ShowStatusText(QStringLiteral("kurz"));
  frontEnd.ShowStatusText(QStringLiteral("x"));
  EXPECT_EQ(out.str(), "\rDie Krank\rkurz     \rx   ");
}

TEST_F(TerminalTest, TheWidthIsThatOfTheMoment) {
  columns = 40;
  frontEnd.ShowStatusText(LongText);
  columns = 6;
  frontEnd.ShowStatusText(LongText);
  EXPECT_EQ(out.str(), "\rDie Krankenversichertendaten werden gel\rDie K");
}

TEST_F(TerminalTest, ATerminalThatDoesNotTellHasEightyColumns) {
  frontEnd.ShowStatusText(QString(200, u'x'));
  EXPECT_EQ(out.str(), '\r' + std::string(79, 'x'));
}

TEST_F(TerminalTest, ATerminalWithoutRoomStillHasALine) {
  columns = 1;
  frontEnd.ShowStatusText(LongText);
  EXPECT_EQ(out.str(), "\rD");
}

TEST(MessageTest, StatusTextsMayBeLeftOutWhileBoxesStay) {
  Console console(StoredRecords::Keep, StatusLine::LeftOut);
  console.practice.Attach(1, PortOf("keine-karte"));
  EXPECT_EQ(console.Run({.port = Port(1)}), exit_status::NoData);
  const std::string messages = console.messages.str();
  EXPECT_TRUE(messages.starts_with("KartoCheck: Bitte eine Krankenversichertenkarte in"))
      << messages;
  EXPECT_TRUE(messages.ends_with("\n-> Abbrechen\n")) << messages;
}

// They are part of the report, and answered as ever.
TEST(MessageTest, BoxesMayBeLeftOutOfTheMessages) {
  std::ostringstream messages;
  ConsoleFrontEnd frontEnd(messages, {.statusLine = StatusLine::LeftOut, .areBoxesShown = false},
                           StoredRecords::Keep);
  frontEnd.Tell(Icon::Critical, QStringLiteral(" KartoCheck "), QStringLiteral("Fehler"));
  const Answer answer =
      frontEnd.Ask({QStringLiteral(" KartoCheck "), QStringLiteral("Noch einmal?"), Icon::Question,
                    Buttons::YesNo});
  EXPECT_EQ(answer, Answer::No);
  EXPECT_EQ(messages.str(), "");
  const std::vector<ReportedMessage> told = frontEnd.TakeMessages();
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0].text, u"Fehler");
  EXPECT_EQ(told[1].answer, Answer::No);
  frontEnd.TellNotWritten();
  EXPECT_NE(messages.str(), "") << "why the program ends";
}

TEST(MessageTest, WhatAPersonIsAskedIsAlwaysShown) {
  std::ostringstream out;
  ConsoleFrontEnd frontEnd(out, {.areBoxesShown = false},
                           [] { return std::optional<std::string>("j"); });
  const Answer answer = frontEnd.Ask(
      {QStringLiteral("Frage"), QStringLiteral("Noch einmal?"), Icon::Question, Buttons::YesNo});
  EXPECT_EQ(answer, Answer::Yes);
  EXPECT_TRUE(out.str().starts_with("Frage: Noch einmal?\n")) << out.str();
}

}  // namespace
}  // namespace kartocheck::test
