#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kvk/dispatcher_boxes.h"
#include "kvk/dispatcher_dialogue.h"
#include "kvk/noted_egk_readers.h"
#include "support/dialogue.h"
#include "support/printing.h"

// The eGK path up to its readers: question, choice of the reader, what its result leads to.

namespace kartocheck::test {
namespace {

constexpr const char* Stationary = R"(
  open 1
  > 20 11 00 00 00
  < 90 00
  > 20 12 01 00 01 01
  < 90 01
  > 20 11 00 00 00
  < 90 00
  close
)";
constexpr const char* Mobile = R"(
  open 1
  > 20 11 00 00 00
  < 95 00
  > 20 12 01 00 01 01
  < 90 01
  > 20 11 00 00 00
  < 95 00
  close
)";

using Calls = std::vector<std::string>;

class DispatcherEgkTest : public testing::Test {
 protected:
  DispatcherEgkTest() { NotedEgkReaders::Forget(); }
  ~DispatcherEgkTest() override { NotedEgkReaders::Forget(); }

  static EgkResult ReadPerson(const EgkTarget& target) {
    target.insured[Element::LastName] = QStringLiteral("Mustermann");
    return EgkResult::Finished;
  }
};

TEST_F(DispatcherEgkTest, AStationaryTerminalsCardIsReadWithoutAQuestion) {
  Dialogue dialogue(Stationary);
  SlotReading reading(dialogue, {});
  NotedEgkReaders::read = ReadPerson;
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_EQ(NotedEgkReaders::calls, Calls{"card"});
  EXPECT_TRUE(reading.link.dialogs.boxes.empty());
  EXPECT_EQ(reading.insured[Element::LastName], u"Mustermann");
  EXPECT_TRUE(reading.info.DataRead);
  EXPECT_TRUE(reading.info.EgkData);
}

TEST_F(DispatcherEgkTest, TheReaderGetsAnOpenLinkAndAnEmptySlot) {
  Dialogue dialogue(Stationary);
  SlotReading reading(dialogue, {});
  NotedEgkReaders::read = [&](const EgkTarget& target) -> EgkResult {
    EXPECT_TRUE(target.link.IsOpen());
    EXPECT_EQ(&target.info, &reading.info);
    EXPECT_EQ(&target.insured, &reading.insured);
    EXPECT_EQ(&target.egk, &reading.egk);
    EXPECT_EQ(&target.validation, &reading.validation);
    reading.ExpectEmptySlot();
    return EgkResult::Stopped;
  };
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
}

TEST_F(DispatcherEgkTest, AMobileTerminalsRecordIsReadAfterTheWarning) {
  Dialogue dialogue(Mobile);
  SlotReading reading(dialogue, {.mobile = true});
  reading.link.dialogs.answers = {Answer::Yes};
  NotedEgkReaders::read = ReadPerson;
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_EQ(NotedEgkReaders::calls, Calls{"mobile"});
  ASSERT_EQ(reading.link.dialogs.boxes.size(), 1U);
  const ShownBox& shown = reading.link.dialogs.boxes.front();
  EXPECT_EQ(shown.title, u" KartoCheck ");
  EXPECT_EQ(shown.text, box::EraseEgkWarning.text);
  EXPECT_EQ(shown.icon, Icon::Question);
  EXPECT_TRUE(shown.isQuestion);
  EXPECT_EQ(shown.buttons, Buttons::YesNo);
  EXPECT_EQ(shown.preselected, Answer::No);
  EXPECT_EQ(shown.consequence, Consequence::ErasesRecord);
  EXPECT_TRUE(reading.info.DataRead);
  EXPECT_TRUE(reading.info.EgkData);
}

TEST_F(DispatcherEgkTest, ATerminalThatTheResetTellsToBeMobileIsAskedToo) {
  Dialogue dialogue(Mobile);
  SlotReading reading(dialogue, {});
  reading.link.dialogs.answers = {Answer::Yes};
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
  EXPECT_EQ(NotedEgkReaders::calls, Calls{"mobile"});
}

TEST_F(DispatcherEgkTest, NoToTheWarningReadsAndErasesNothing) {
  Dialogue dialogue(Mobile);
  SlotReading reading(dialogue, {.mobile = true});
  reading.link.dialogs.answers = {Answer::No};
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
  EXPECT_EQ(NotedEgkReaders::calls, Calls{});
  reading.ExpectEmptySlot();
}

TEST_F(DispatcherEgkTest, AFailedReadLeavesNothingOfWhatTheReaderWrote) {
  Dialogue dialogue(Stationary);
  SlotReading reading(dialogue, {});
  NotedEgkReaders::read = [](const EgkTarget& target) -> EgkResult {
    (void)ReadPerson(target);
    return EgkResult::Stopped;
  };
  EXPECT_EQ(reading.Read(), ReadOutcome::Failed);
  reading.ExpectEmptySlot();
}

TEST_F(DispatcherEgkTest, ASerialNumberAloneIsKeptAndNoDataRead) {
  Dialogue dialogue(Stationary);
  SlotReading reading(dialogue, {});
  NotedEgkReaders::read = [](const EgkTarget& target) -> EgkResult {
    target.egk.iccsn = QStringLiteral("80276001000000000001");
    return EgkResult::Finished;
  };
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_EQ(reading.egk.iccsn, u"80276001000000000001");
  EXPECT_FALSE(reading.info.DataRead);
  EXPECT_FALSE(reading.info.EgkData);
}

TEST_F(DispatcherEgkTest, ACardsStatusIsDataToo) {
  Dialogue dialogue(Stationary);
  SlotReading reading(dialogue, {});
  NotedEgkReaders::read = [](const EgkTarget& target) -> EgkResult {
    target.egk.statusText = QStringLiteral("30");
    return EgkResult::Finished;
  };
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  EXPECT_TRUE(reading.info.DataRead);
  EXPECT_TRUE(reading.info.EgkData);
}

TEST_F(DispatcherEgkTest, AReadWithoutAnyDataIsNoDataRead) {
  Dialogue dialogue(Stationary);
  SlotReading reading(dialogue, {});
  NotedEgkReaders::read = [](const EgkTarget&) -> EgkResult { return EgkResult::Finished; };
  EXPECT_EQ(reading.Read(), ReadOutcome::Done);
  reading.ExpectEmptySlot();
}

}  // namespace
}  // namespace kartocheck::test
