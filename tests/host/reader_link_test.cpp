#include "host/reader_link.h"

#include <gmock/gmock.h>

#include "host/fake_pcsc.h"
#include "host/pcsc_transport.h"
#include "host/reader_texts.h"
#include "simulator/hex.h"

namespace ctapi::host {
namespace {

using ctapi::test::PrintTo;
using ctapi::test::RowName;
using ctapi::test::ToHex;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* ResetCt = "2011000000";
constexpr const char* RequestIcc = "201201000101";
constexpr const char* ResetIcc = "20110100";
constexpr const char* CardStatus = "2013008000";
constexpr const char* EjectNow = "201501000100";
constexpr const char* Select = "00A4040C06D27600000102";

class ReaderLinkTest : public testing::Test {
 protected:
  ReaderLinkTest() { link_ = Open(); }

  std::unique_ptr<TerminalLink> Open() { return transport_.Open(0).Link; }

  std::string Ask(Unit unit, const char* command) {
    Bytes response{0xEE};
    const int code = link_->Exchange(unit, *BytesFromHex(command), response);
    if (code != code::Success) {
      EXPECT_TRUE(response.empty());
    }
    return code == 0 ? ToHex(response) : "code " + std::to_string(code);
  }
  std::string AskTerminal(const char* command) { return Ask(Unit::Terminal, command); }
  std::string AskCard(const char* command) { return Ask(Unit::Card, command); }

  test::FakePcsc::Reader& Reader() { return pcsc_.Readers.at("Reader One 00 00"); }
  void PullCard() {
    Reader().HasCard = false;
    ++Reader().Events;
  }
  void InsertCard() {
    Reader().HasCard = true;
    ++Reader().Events;
  }
  void AnswerWith(std::string hex, PcscCode code = PcscCode::Success) {
    pcsc_.OnTransmit = [hex = std::move(hex), code](const Bytes&, Bytes& answer) {
      answer = *BytesFromHex(hex);
      return code;
    };
  }
  // Longer than what the service said of a reader is taken for true.
  void PassTime() { pcsc_.Time += std::chrono::milliseconds(250); }
  [[nodiscard]] double SecondsPassed() const {
    return std::chrono::duration<double>(pcsc_.Time.time_since_epoch()).count();
  }

  test::FakePcsc pcsc_;
  PcscTransport transport_{pcsc_.Api()};
  std::unique_ptr<TerminalLink> link_;
};

TEST_F(ReaderLinkTest, InitTouchesNoCard) {
  EXPECT_TRUE(pcsc_.Calls.empty());
}

TEST_F(ReaderLinkTest, RequestIccConnectsAlone) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone"));
  EXPECT_EQ(AskTerminal(CardStatus), "8001059000");
}

TEST_F(ReaderLinkTest, RequestIccTellsTheAnswerToReset) {
  EXPECT_EQ(AskTerminal("201201010101"), "3B808001019001");
}

TEST_F(ReaderLinkTest, RequestIccTwiceIsToldApart) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(AskTerminal(RequestIcc), "6201");
  EXPECT_EQ(AskTerminal(ResetCt), "9000");
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone", "power down", "connect alone"));
}

TEST_F(ReaderLinkTest, RequestIccOfAnotherCardIsNew) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  PullCard();
  InsertCard();
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone", "power down", "connect alone"));
}

TEST_F(ReaderLinkTest, RequestIccWaitsForACard) {
  PullCard();
  pcsc_.WhileWaiting = [this] {
    if (SecondsPassed() > 3.0 && !Reader().HasCard) InsertCard();
  };
  EXPECT_EQ(AskTerminal("201201000105"), "9001");
  EXPECT_NEAR(SecondsPassed(), 3.25, 0.1);
  EXPECT_LE(*std::max_element(pcsc_.Waits.begin(), pcsc_.Waits.end()), 250U);
}

TEST_F(ReaderLinkTest, RequestIccGivesUpAfterTheGivenSeconds) {
  PullCard();
  EXPECT_EQ(AskTerminal("201201000102"), "6200");
  EXPECT_NEAR(SecondsPassed(), 2.0, 0.01);
  EXPECT_EQ(AskTerminal("201201000100"), "6200");
  EXPECT_EQ(AskTerminal("2012010000"), "6200");
  EXPECT_NEAR(SecondsPassed(), 2.0, 0.01);
  EXPECT_EQ(AskTerminal(CardStatus), "8001009000");
}

TEST_F(ReaderLinkTest, AMuteCardIsTold) {
  Reader().IsMute = true;
  EXPECT_EQ(AskTerminal(RequestIcc), "6400");
  EXPECT_EQ(AskTerminal(ResetIcc), "6400");
  Reader().IsMute = false;
  for (const PcscCode code :
       {PcscCode::UnresponsiveCard, PcscCode::UnpoweredCard, PcscCode::ProtocolMismatch}) {
    pcsc_.Connected = code;
    EXPECT_EQ(AskTerminal(RequestIcc), "6400");
  }
}

TEST_F(ReaderLinkTest, ACardPulledBeforeTheConnectionIsAbsent) {
  pcsc_.Connected = PcscCode::NoSmartcard;
  EXPECT_EQ(AskTerminal(RequestIcc), "6200");
  EXPECT_EQ(AskTerminal(ResetIcc), "6400");
}

TEST_F(ReaderLinkTest, ResetIccConnectsOrResetsWarm) {
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone", "warm reset", "connect alone"));
  EXPECT_EQ(AskTerminal("20110101"), "3B808001019001");
}

TEST_F(ReaderLinkTest, ResetIccOfAnotherCardConnectsAnew) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  PullCard();
  InsertCard();
  PassTime();
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone", "power down", "connect alone"));
}

// Each question to the service takes as long as an exchange with a quick card.
TEST_F(ReaderLinkTest, AReaderSeenJustNowIsNotAskedForAgain) {
  EXPECT_EQ(AskTerminal(ResetCt), "9000");
  EXPECT_EQ(pcsc_.StateQuestions, 0) << "init has seen it";
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(pcsc_.StateQuestions, 2) << "whether the card is held, and its answer to reset";
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_EQ(pcsc_.StateQuestions, 3) << "its answer to reset";
  EXPECT_EQ(AskTerminal(ResetCt), "9000");
  EXPECT_EQ(pcsc_.StateQuestions, 3) << "the end of the connection tells it too";
  PassTime();
  EXPECT_EQ(AskTerminal(ResetCt), "9000");
  EXPECT_EQ(pcsc_.StateQuestions, 4);
}

TEST_F(ReaderLinkTest, ResetCtWithoutTheReaderFails) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.Readers.clear();
  pcsc_.Disconnected = PcscCode::ReaderUnavailable;
  EXPECT_EQ(AskTerminal(ResetCt), "code -8");
  PassTime();
  EXPECT_EQ(AskTerminal(ResetCt), "code -8");
}

TEST_F(ReaderLinkTest, ResetCtOfACardThatIsGoneSucceeds) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  PullCard();
  pcsc_.Disconnected = PcscCode::InvalidHandle;
  EXPECT_EQ(AskTerminal(ResetCt), "9000");
}

TEST_F(ReaderLinkTest, TheReaderMayGoRightAfterTheConnection) {
  pcsc_.WhileConnecting = [this] { pcsc_.Readers.clear(); };
  EXPECT_EQ(AskTerminal(RequestIcc), "code -8");
  EXPECT_EQ(AskCard(Select), "6F00");
}

TEST_F(ReaderLinkTest, ResetIccWithoutACardFails) {
  PullCard();
  EXPECT_EQ(AskTerminal(ResetIcc), "6400");
}

TEST_F(ReaderLinkTest, ResetIccOfACardThatFallsSilentFails) {
  for (const PcscCode code : {PcscCode::UnresponsiveCard, PcscCode::RemovedCard}) {
    for (PcscCode* const call : {&pcsc_.Connected, &pcsc_.Disconnected}) {
      EXPECT_EQ(AskTerminal(ResetIcc), "9001");
      *call = code;
      EXPECT_EQ(AskTerminal(ResetIcc), call == &pcsc_.Connected ? "6400" : "9001");
      *call = PcscCode::Success;
      EXPECT_EQ(AskTerminal(ResetCt), "9000");
    }
    EXPECT_EQ(AskTerminal(CardStatus), "8001019000");
  }
}

TEST_F(ReaderLinkTest, EjectIccPowersDownWithoutWaiting) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(AskTerminal(EjectNow), "9000");
  EXPECT_EQ(pcsc_.Calls.back(), "power down");
  EXPECT_TRUE(pcsc_.Waits.empty());
}

TEST_F(ReaderLinkTest, EjectIccWaitsForTheRemoval) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(AskTerminal("201501010101"), "6200");
  EXPECT_NEAR(SecondsPassed(), 1.0, 0.01);
  pcsc_.WhileWaiting = [this] { PullCard(); };
  EXPECT_EQ(AskTerminal("201501010109"), "9001");
  EXPECT_NEAR(SecondsPassed(), 1.25, 0.01);
}

TEST_F(ReaderLinkTest, TellsItsUnits) {
  EXPECT_EQ(AskTerminal("2013008100"), "8101019000");
}

TEST_F(ReaderLinkTest, TellsNameAndDriverVersion) {
  // "Reade" "One  " "1.5.2"
  EXPECT_EQ(AskTerminal("2013004600"), "460F52656164654F6E652020312E352E329000");
  pcsc_.Attribute = PcscCode::UnsupportedFeature;
  EXPECT_EQ(AskTerminal("2013004600"), "460F52656164654F6E652020312E352E329000");
  EXPECT_TRUE(pcsc_.Calls.empty()) << "no card is powered for it";
}

TEST_F(ReaderLinkTest, WithoutADriverVersionThatIsBlank) {
  pcsc_.Attribute = PcscCode::UnsupportedFeature;
  EXPECT_EQ(AskTerminal("2013004600"),
            "460F52656164654F6E6520202020202020"
            "9000");
}

TEST_F(ReaderLinkTest, RefusesOtherCommands) {
  EXPECT_EQ(AskTerminal("2071000100"), "6D00");
  EXPECT_EQ(AskTerminal("20"), "6700");
  EXPECT_EQ(AskTerminal("201100"), "6700");
  EXPECT_EQ(AskTerminal("00A4040000"), "6E00");
  EXPECT_EQ(AskTerminal("2011020000"), "6A00");
  EXPECT_EQ(AskTerminal("201202000101"), "6A00");
  EXPECT_EQ(AskTerminal("201201030101"), "6A00");
  EXPECT_EQ(AskTerminal("20110102"), "6A00");
  EXPECT_EQ(AskTerminal("2013014600"), "6A00");
  EXPECT_EQ(AskTerminal("2013008500"), "6A00");
  EXPECT_EQ(AskTerminal("201502000100"), "6A00");
}

TEST_F(ReaderLinkTest, WithoutAnActiveCardTheCardIsNotAsked) {
  EXPECT_EQ(AskCard(Select), "6F00");
  EXPECT_TRUE(pcsc_.Sent.empty());
}

TEST_F(ReaderLinkTest, HandsTheCardsAnswerOnUnchanged) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("61 07");
  EXPECT_EQ(AskCard(Select), "6107");
  EXPECT_EQ(ToHex(pcsc_.Sent.at(0)), Select);
  AnswerWith("01 02 6A 82");
  EXPECT_EQ(AskCard(Select), "01026A82");
}

TEST_F(ReaderLinkTest, ClosingPowersTheCardDown) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  link_.reset();
  EXPECT_EQ(pcsc_.Calls.back(), "power down");
}

struct CodeRow {
  const char* Name;
  PcscCode Pcsc;
  const char* Result;
};

// What goes wrong while a card is being asked.
class ReaderFault : public ReaderLinkTest, public testing::WithParamInterface<CodeRow> {};

TEST_P(ReaderFault, HasItsCodeAndDropsTheCard) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("", GetParam().Pcsc);
  EXPECT_EQ(AskCard(Select), GetParam().Result);
  EXPECT_EQ(pcsc_.Calls.back(), "power down");
}

INSTANTIATE_TEST_SUITE_P(
    Host, ReaderFault,
    testing::Values(CodeRow{"CardPulled", PcscCode::RemovedCard, "code -8"},
                    CodeRow{"NoCard", PcscCode::NoSmartcard, "code -8"},
                    CodeRow{"ReaderUnplugged", PcscCode::ReaderUnavailable, "code -8"},
                    CodeRow{"ReaderUnknown", PcscCode::UnknownReader, "code -8"},
                    CodeRow{"ResetByAnother", PcscCode::ResetCard, "code -10"},
                    CodeRow{"BrokenExchange", PcscCode::NotTransacted, "code -10"},
                    CodeRow{"UnknownFailure", PcscCode::UnknownError, "code -10"},
                    CodeRow{"StaleHandle", PcscCode::InvalidHandle, "code -10"},
                    CodeRow{"NoAnswer", PcscCode::Success, "code -10"},
                    CodeRow{"ServiceEnded", PcscCode::NoService, "code -127"},
                    CodeRow{"ServiceStopped", PcscCode::ServiceStopped, "code -127"},
                    CodeRow{"ServiceTooBusy", PcscCode::ServerTooBusy, "code -127"},
                    CodeRow{"ServiceUnreachable", PcscCode::CommunicationError, "code -127"}),
    RowName<CodeRow>);

// What goes wrong while a card is being connected to. Nothing was exchanged yet, so nothing broke.
class ConnectionFault : public ReaderLinkTest, public testing::WithParamInterface<CodeRow> {};

TEST_P(ConnectionFault, HasItsAnswer) {
  for (const char* const command : {RequestIcc, ResetIcc}) {
    pcsc_.Connected = GetParam().Pcsc;
    EXPECT_EQ(AskTerminal(command), GetParam().Result) << command;
    pcsc_.Connected = PcscCode::Success;
    if (GetParam().Result == std::string_view("code -127")) return;
    EXPECT_EQ(AskTerminal(RequestIcc), "9001") << "it can be tried again";
    EXPECT_EQ(AskTerminal(ResetCt), "9000");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Host, ConnectionFault,
    testing::Values(CodeRow{"SilentCard", PcscCode::UnresponsiveCard, "6400"},
                    CodeRow{"UnpoweredCard", PcscCode::UnpoweredCard, "6400"},
                    CodeRow{"UnsupportedCard", PcscCode::UnsupportedCard, "6400"},
                    CodeRow{"NoCommonProtocol", PcscCode::ProtocolMismatch, "6400"},
                    CodeRow{"CardNotSupported", PcscCode::CardUnsupported, "6400"},
                    CodeRow{"NotReady", PcscCode::NotReady, "6400"},
                    CodeRow{"Timeout", PcscCode::Timeout, "6400"},
                    CodeRow{"InternalError", PcscCode::InternalError, "6400"},
                    CodeRow{"Held", PcscCode::SharingViolation, "code -127"},
                    CodeRow{"ReaderUnplugged", PcscCode::ReaderUnavailable, "code -8"},
                    CodeRow{"ServiceEnded", PcscCode::NoService, "code -127"}),
    RowName<CodeRow>);

TEST_F(ReaderLinkTest, AReaderThatGoesDuringTheConnectionIsGone) {
  pcsc_.Connected = PcscCode::NotReady;
  pcsc_.StateAsked = PcscCode::UnknownReader;
  EXPECT_EQ(AskTerminal(RequestIcc), "code -8");
}

// The service keeps whoever connects waiting for as long as another program is in a transaction.
TEST_F(ReaderLinkTest, NobodyWaitsForAnotherProgram) {
  Reader().IsHeld = true;
  EXPECT_EQ(AskTerminal("2013004600").substr(0, 4), "460F");
  EXPECT_EQ(AskTerminal(RequestIcc), "code -127");
  EXPECT_EQ(AskTerminal(ResetIcc), "code -127");
  EXPECT_EQ(pcsc_.EndlessWaits, 0);
  Reader().IsHeld = false;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
}

TEST_F(ReaderLinkTest, AHeldReaderWithoutACardIsWaitedAt) {
  PullCard();
  Reader().IsHeld = true;
  EXPECT_EQ(AskTerminal(RequestIcc), "6200");
  EXPECT_EQ(pcsc_.EndlessWaits, 0);
}

TEST_F(ReaderLinkTest, AnExclusiveConnectionOfAnotherProgramHoldsTheCardToo) {
  Reader().OtherState = reader_state::Exclusive;
  EXPECT_EQ(AskTerminal(RequestIcc), "code -127");
}

TEST_F(ReaderLinkTest, AReaderWithoutAStateIsGone) {
  constexpr std::uint32_t States[] = {reader_state::Unknown, reader_state::Unavailable,
                                      reader_state::Ignore};
  for (const std::uint32_t state : States) {
    Reader().OtherState = state;
    EXPECT_EQ(AskTerminal(CardStatus), "code -8") << state;
    Reader().OtherState = 0;
    EXPECT_EQ(AskTerminal(CardStatus), "8001019000") << state;
  }
}

TEST_F(ReaderLinkTest, AWarmResetMayChangeTheProtocol) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_EQ(AskCard("80840000"), "9000");
  EXPECT_EQ(pcsc_.Sent.back(), *BytesFromHex("8084000000")) << "as T=0 sends it";
}

TEST_F(ReaderLinkTest, AnotherCardDuringTheExchangeIsNotOurs) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.OnTransmit = [this](const Bytes&, Bytes&) {
    PullCard();
    InsertCard();
    return PcscCode::NotTransacted;
  };
  EXPECT_EQ(AskCard(Select), "code -8");
}

TEST_F(ReaderLinkTest, WithoutSecondsNothingIsWaitedFor) {
  PullCard();
  EXPECT_EQ(AskTerminal("201201000005"), "6200") << "the byte is none of the command's data";
  EXPECT_EQ(AskTerminal("20120100"), "6200");
  EXPECT_EQ(SecondsPassed(), 0);
}

TEST_F(ReaderLinkTest, GetResponseHasTheClassOfItsCommand) {
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.OnTransmit = [this](const Bytes&, Bytes& answer) {
    answer = *BytesFromHex(pcsc_.Sent.size() == 1 ? "61 02" : "AA BB 90 00");
    return PcscCode::Success;
  };
  EXPECT_EQ(AskCard("80A4000002AABB00"), "AABB9000");
  EXPECT_EQ(pcsc_.Sent.back(), *BytesFromHex("80C0000002"));
}

TEST_F(ReaderLinkTest, AnAnswerOfAnyLengthIsHandedOn) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  const std::string data(2 * 300, 'A');
  AnswerWith(data + "9000");
  EXPECT_EQ(AskCard(Select), data + "9000");
}

TEST_F(ReaderLinkTest, OneByteIsNoAnswer) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("90");
  EXPECT_EQ(AskCard(Select), "code -10");
}

TEST_F(ReaderLinkTest, AnAnswerTooLongForTheBufferKeepsTheCard) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("", PcscCode::InsufficientBuffer);
  EXPECT_EQ(AskCard(Select), "code -11");
  AnswerWith("90 00");
  EXPECT_EQ(AskCard(Select), "9000");
}

// A driver tells the removal of a card later than the failure of the exchange.
TEST_F(ReaderLinkTest, ACardPulledDuringTheExchangeIsGone) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("", PcscCode::NotTransacted);
  pcsc_.WhileWaiting = [this] { PullCard(); };
  EXPECT_EQ(AskCard(Select), "code -8");
}

TEST_F(ReaderLinkTest, AReaderUnpluggedDuringTheExchangeIsGone) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.OnTransmit = [this](const Bytes&, Bytes&) {
    pcsc_.Readers.clear();
    return PcscCode::InvalidValue;
  };
  EXPECT_EQ(AskCard(Select), "code -8");
  EXPECT_EQ(AskTerminal(CardStatus), "code -8");
}

TEST_F(ReaderLinkTest, ACardHeldByAnotherProgramIsRefused) {
  pcsc_.Connected = PcscCode::SharingViolation;
  EXPECT_EQ(AskTerminal(RequestIcc), "code -127");
  EXPECT_EQ(AskTerminal(ResetIcc), "code -127");
  pcsc_.Connected = PcscCode::Success;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
}

TEST_F(ReaderLinkTest, WithoutTheServiceTheLinkIsLostUntilInit) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("", PcscCode::CommunicationError);
  EXPECT_EQ(AskCard(Select), "code -127");
  AnswerWith("90 00");
  EXPECT_EQ(AskCard(Select), "code -128");
  EXPECT_EQ(AskTerminal(ResetCt), "code -128");
  link_ = Open();
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
}

TEST_F(ReaderLinkTest, TheServiceMayEndBetweenCommands) {
  pcsc_.StateAsked = PcscCode::InvalidHandle;
  PassTime();
  EXPECT_EQ(AskTerminal(ResetCt), "code -127");
  EXPECT_EQ(AskTerminal(ResetCt), "code -128");
}

TEST_F(ReaderLinkTest, T0CardsAreAskedForTheirAnswer) {
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.OnTransmit = [](const Bytes& command, Bytes& answer) {
    switch (command[1]) {
      case 0xA4:
        answer = *BytesFromHex("61 03");
        break;
      case 0xC0:
        answer = *BytesFromHex(command[4] == 3 ? "01 02 03 61 01" : "04 90 00");
        break;
      default:
        answer = *BytesFromHex(command[4] == 0x05 ? "05 05 05 05 05 90 00" : "6C 05");
    }
    return PcscCode::Success;
  };
  EXPECT_EQ(AskCard("00A4040002112200"), "010203049000") << "Le is not sent with data";
  EXPECT_EQ(AskCard("00B0000000"), "05050505059000");
  std::vector<std::string> sent;
  for (const Bytes& command : pcsc_.Sent) sent.push_back(ToHex(command));
  EXPECT_THAT(
      sent, ElementsAre("00A40400021122", "00C0000003", "00C0000001", "00B0000000", "00B0000005"));
}

TEST_F(ReaderLinkTest, T0CommandsOfFourBytesGetAFifth) {
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(AskCard("000E0000"), "9000");
  EXPECT_EQ(ToHex(pcsc_.Sent.at(0)), "000E000000");
}

TEST_F(ReaderLinkTest, AT0CardThatNeverEndsIsBroken) {
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("61 00");
  EXPECT_EQ(AskCard(Select), "code -10");
  EXPECT_EQ(pcsc_.Sent.size(), 2U) << "the command and one GET RESPONSE";
}

TEST_F(ReaderLinkTest, AT0CardThatNeverLikesTheLengthIsHandedOn) {
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  AnswerWith("6C 05");
  EXPECT_EQ(AskCard("00B0000000"), "6C05");
  EXPECT_EQ(pcsc_.Sent.size(), 2U) << "once as it is, once with the other length";
}

TEST_F(ReaderLinkTest, AT0CardMayCorrectTheLengthOfGetResponse) {
  Reader().Protocol = card_protocol::T0;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  const char* const answers[] = {"61 00", "6C 02", "AA BB 90 00"};
  pcsc_.OnTransmit = [&](const Bytes&, Bytes& answer) {
    answer = *BytesFromHex(answers[pcsc_.Sent.size() - 1]);
    return PcscCode::Success;
  };
  EXPECT_EQ(AskCard(Select), "AABB9000");
}

// The memory of a KVK: header, directory with the application's identifier, data from byte 30 on.
class MemoryCardTest : public ReaderLinkTest {
 protected:
  MemoryCardTest() {
    Reader().Atr = *BytesFromHex("3B 04 A2 13 10 91");
    memory_ = *BytesFromHex(
        "A2 13 10 91 46 0B 81 15 00 00 00 00 00 00 00 00 00 61 08 4F 06 D2 76 "
        "00 00 01 01 00 00 00");
    for (int i = 30; i < 256; ++i) memory_.push_back(static_cast<std::uint8_t>(i));
    pcsc_.OnTransmit = [this](const Bytes& command, Bytes& answer) {
      if (command.size() != 5 || command[0] != 0xFF || command[1] != 0xB0) {
        answer = {0x6E, 0x00};
        return PcscCode::Success;
      }
      const ByteView piece = ByteView(memory_).subspan(command[3], command[4]);
      answer.assign(piece.begin(), piece.end());
      answer.insert(answer.end(), {0x90, 0x00});
      return PcscCode::Success;
    };
  }
  Bytes memory_;
};

TEST_F(MemoryCardTest, IsReadAsATerminalDoes) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  EXPECT_EQ(AskTerminal(ResetIcc), "9000");
  EXPECT_EQ(AskCard("00B0000000"), "6986");
  EXPECT_EQ(AskCard("00A4040006D27600000101"), "9000");
  EXPECT_EQ(AskCard("00B0000000"), ToHex(ByteView(memory_).subspan(30)) + "9000");
  EXPECT_EQ(AskCard("00B0000002"), "1E1F9000");
  EXPECT_EQ(AskCard("00B000E1FF"), "FF9000");
  EXPECT_EQ(AskCard("00B000E200"), "6B00");
}

TEST_F(MemoryCardTest, KnowsTheOtherHeaderToo) {
  Reader().Atr = *BytesFromHex("3B 04 92 23 10 91");
  EXPECT_EQ(AskTerminal(ResetIcc), "9000");
}

TEST_F(MemoryCardTest, OtherApplicationsAreNotOnIt) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  EXPECT_EQ(AskCard("00A4040006D28000000101"), "6A82");
  EXPECT_EQ(AskCard("00A4040007D276000001010000"), "6A82");
  EXPECT_EQ(AskCard("00A4020C022F02"), "6A82");
  EXPECT_EQ(AskCard("000E0000"), "6D00");
  EXPECT_EQ(AskCard("80B0000000"), "6E00");
  EXPECT_EQ(AskCard("00B0"), "6700");
}

TEST_F(MemoryCardTest, AReaderThatCannotReadItHasNoKvk) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  for (const char* const answer : {"6E00", "6A82", "AABB6A82"}) {
    AnswerWith(answer);
    EXPECT_EQ(AskCard("00A4040006D27600000101"), "6A82") << answer;
    EXPECT_EQ(AskCard("00B0000000"), "6986") << answer;
  }
  AnswerWith("90");
  EXPECT_EQ(AskCard("00A4040006D27600000101"), "code -10");
}

TEST_F(MemoryCardTest, EndsWithinItsDirectoryToo) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  memory_.resize(30);
  AnswerWith(ToHex(memory_) + "6282");
  EXPECT_EQ(AskCard("00A4040006D27600000101"), "9000");
}

TEST_F(MemoryCardTest, AFailedSelectionDeselects) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  EXPECT_EQ(AskCard("00A4040006D27600000101"), "9000");
  EXPECT_EQ(AskCard("00A4040006D28000000101"), "6A82");
  EXPECT_EQ(AskCard("00B0000000"), "6986");
}

TEST_F(MemoryCardTest, ANewActivationDeselects) {
  for (const char* const command : {ResetIcc, ResetCt}) {
    EXPECT_NE(AskTerminal(RequestIcc), "6400");
    EXPECT_EQ(AskCard("00A4040006D27600000101"), "9000");
    EXPECT_EQ(AskTerminal(command), "9000");
    if (command == ResetCt) {
      EXPECT_EQ(AskTerminal(RequestIcc), "9000");
    }
    EXPECT_EQ(AskCard("00B0000000"), "6986") << command;
  }
}

TEST_F(MemoryCardTest, ALongerAnswerToResetIsAnotherCard) {
  Reader().Atr.push_back(0x00);
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
}

TEST_F(MemoryCardTest, WithoutTheKvkInItsDirectoryIsNone) {
  memory_[21] = 0xD3;
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  EXPECT_EQ(AskCard("00A4040006D27600000101"), "6A82");
}

TEST_F(MemoryCardTest, BehindAReaderThatLeavesTheHeaderOutBeginsWithTheData) {
  memory_.erase(memory_.begin(), memory_.begin() + 30);
  memory_.resize(256);
  EXPECT_EQ(AskTerminal(RequestIcc), "9000");
  EXPECT_EQ(AskCard("00A4040006D27600000101"), "9000");
  EXPECT_EQ(AskCard("00B0000002"), "1E1F9000");
}

TEST(PcscTransport, WithoutTheClientLibraryThereIsNoService) {
  PcscTransport transport(std::nullopt);
  EXPECT_EQ(transport.Open(0).Code, code::HostError);
}

TEST(PcscTransport, WithoutTheServiceEveryIndexIsRefused) {
  test::FakePcsc pcsc;
  pcsc.Established = PcscCode::NoService;
  PcscTransport transport(pcsc.Api());
  EXPECT_EQ(transport.Open(0).Code, code::HostError);
  EXPECT_EQ(transport.Open(255).Code, code::HostError);
  pcsc.Established = PcscCode::Success;
  EXPECT_EQ(transport.Open(0).Code, code::Success);
}

TEST(PcscTransport, RenewsItsContextWhereTheServiceWasStartedAnew) {
  test::FakePcsc pcsc;
  PcscTransport transport(pcsc.Api());
  EXPECT_EQ(transport.Open(0).Code, code::Success);
  EXPECT_EQ(transport.Open(0).Code, code::Success);
  EXPECT_EQ(pcsc.Contexts, 1) << "the context is kept";
  pcsc.Listed = PcscCode::ServiceStopped;
  EXPECT_EQ(transport.Open(0).Code, code::HostError);
  EXPECT_EQ(pcsc.Contexts, 2);
  EXPECT_EQ(pcsc.Released, 1);
  pcsc.Listed = PcscCode::Success;
  EXPECT_EQ(transport.Open(0).Code, code::Success);
}

TEST(PcscTransport, ReadersKeepTheirIndex) {
  test::FakePcsc pcsc;
  pcsc.Readers = {{"M", {}}, {"B", {}}};
  PcscTransport transport(pcsc.Api());
  const auto manufacturer = [&](std::size_t index) {
    const OpenedLink opened = transport.Open(index);
    Bytes response;
    if (opened.Code != code::Success) return std::to_string(opened.Code);
    EXPECT_EQ(opened.Link->Exchange(Unit::Terminal, *BytesFromHex("2013004600"), response), 0);
    return std::string(1, static_cast<char>(response[2]));
  };
  EXPECT_EQ(manufacturer(0), "B");
  EXPECT_EQ(manufacturer(1), "M");
  EXPECT_EQ(manufacturer(2), "-1");
  pcsc.Readers = {{"M", {}}, {"A", {}}, {"Z", {}}};
  EXPECT_EQ(manufacturer(0), "-1") << "unplugged";
  EXPECT_EQ(manufacturer(1), "M");
  EXPECT_EQ(manufacturer(2), "A");
  EXPECT_EQ(manufacturer(3), "Z");
  pcsc.Readers.clear();
  EXPECT_EQ(manufacturer(1), "-1");
  pcsc.Readers = {{"B", {}}};
  EXPECT_EQ(manufacturer(0), "B");
}

TEST(PcscTransport, AServiceThatNeverFitsIsRefused) {
  test::FakePcsc pcsc;
  pcsc.Listed = PcscCode::InsufficientBuffer;
  PcscTransport transport(pcsc.Api());
  EXPECT_EQ(transport.Open(0).Code, code::HostError);
}

TEST(PcscTransport, ManyReadersAreListedWhole) {
  test::FakePcsc pcsc;
  pcsc.Readers.clear();
  for (int i = 0; i < 60; ++i) {
    pcsc.Readers[std::string(120, 'R') + std::to_string(100 + i)] = {};
  }
  PcscTransport transport(pcsc.Api());
  EXPECT_EQ(transport.Open(59).Code, code::Success);
  EXPECT_EQ(transport.Open(60).Code, code::InvalidParameter);
}

struct TextRow {
  const char* Name;
  const char* Reader;
  std::optional<std::uint32_t> Version;
  const char* Object;
};

class ReaderTexts : public testing::TestWithParam<TextRow> {};

TEST_P(ReaderTexts, AreFiveCharactersEach) {
  const Bytes object = ManufacturerObject(GetParam().Reader, GetParam().Version);
  ASSERT_EQ(object.size(), 17U);
  EXPECT_EQ(ToHex(ByteView(object).first(2)), "460F");
  EXPECT_EQ(std::string(object.begin() + 2, object.end()), GetParam().Object);
}

INSTANTIATE_TEST_SUITE_P(
    Host, ReaderTexts,
    testing::Values(TextRow{"UsualName", "Virtual PCD 00 00", 0x00080000, "VirtuPCD  0.8.0"},
                    TextRow{"LongVersion", "Reader Two", 0x0C0F1234, "ReadeTwo  12.15"},
                    TextRow{"Brackets", "ACME [Secure] (123) 00 00", std::nullopt,
                            "ACME Secur     "},
                    TextRow{"OneWord", "X", 0x01000000, "X         1.0.0"},
                    TextRow{"Nothing", "", std::nullopt, "               "},
                    TextRow{"NotPrintable", "Z\xC3\xBC\tr N", std::nullopt, "Z???rN         "},
                    TextRow{"MakerOfTerminals", "denrv NVRHC", std::nullopt, "denr*NVRH*     "},
                    TextRow{"ProductDelta", "A PKTD 1", std::nullopt, "A    PKTD*     "},
                    TextRow{"ProductOmega", "A pkto", std::nullopt, "A    pkto*     "},
                    TextRow{"ProductDeltaMobile", "A PKTDM", std::nullopt, "A    PKTD*     "},
                    TextRow{"ProductGamma", "PKT-G PKT-Gx", std::nullopt, "PKT-*PKT-*     "},
                    TextRow{"ProductSigma", "A PKT-S", std::nullopt, "A    PKT-*     "}),
    RowName<TextRow>);

}  // namespace
}  // namespace ctapi::host
