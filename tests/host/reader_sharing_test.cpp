#include <condition_variable>
#include <gmock/gmock.h>
#include <mutex>

#include "host/fake_pcsc.h"
#include "host/pcsc_transport.h"
#include "host/reader_link.h"
#include "simulator/hex.h"

// A reader that another program uses, too: what is waited for, for how long, and what is told
// afterwards.
namespace ctapi::host {
namespace {

using ctapi::test::PrintTo;
using ctapi::test::RowName;
using ctapi::test::ToHex;
using std::chrono::milliseconds;
using testing::ElementsAre;

constexpr const char* RequestIcc = "201201000101";
constexpr const char* RequestIcc5 = "201201000105";
constexpr const char* ResetIcc = "20110100";
constexpr const char* ResetCt = "2011000000";
constexpr const char* CardStatus = "2013008000";
constexpr const char* Select = "00A4040C06D27600000102";

std::string Ask(TerminalLink& link, Unit unit, const char* command) {
  Bytes response;
  const int code = link.Exchange(unit, *BytesFromHex(command), response);
  return code == 0 ? ToHex(response) : "code " + std::to_string(code);
}

class SharedReaderTest : public testing::Test {
 protected:
  std::string AskTerminal(const char* command) { return Ask(*link_, Unit::Terminal, command); }
  std::string AskCard(const char* command) { return Ask(*link_, Unit::Card, command); }
  PortTroubleKind Trouble() { return transport_.InfoOf(0).Trouble; }
  test::FakePcsc::Reader& Reader() { return pcsc_.Readers.at("Reader One 00 00"); }
  [[nodiscard]] double SecondsPassed() const {
    return std::chrono::duration<double>(pcsc_.Time.time_since_epoch()).count();
  }
  // From then on the card is free.
  void FreeAfter(double seconds, std::function<void()> free) {
    pcsc_.WhileWaiting = [this, seconds, free = std::move(free)] {
      if (SecondsPassed() > seconds) free();
    };
  }

  test::FakePcsc pcsc_;
  PcscTransport transport_{pcsc_.Api()};
  std::unique_ptr<TerminalLink> link_ = transport_.Open(0).Link;
};

TEST_F(SharedReaderTest, RequestIccWaitsForAHeldCard) {
  Reader().IsHeld = true;
  FreeAfter(3.0, [this] { Reader().IsHeld = false; });
  EXPECT_EQ(AskTerminal(RequestIcc5), "9001");
  EXPECT_NEAR(SecondsPassed(), 3.0, 0.05);
  EXPECT_EQ(pcsc_.EndlessWaits, 0);
  ASSERT_FALSE(pcsc_.Waits.empty());
  EXPECT_LE(*std::max_element(pcsc_.Waits.begin(), pcsc_.Waits.end()), 20U);
  EXPECT_EQ(Trouble(), PortTroubleKind::None);
}

// Between the look at the reader and the connection another program may have come.
TEST_F(SharedReaderTest, RequestIccWaitsForACardThatIsTakenInBetween) {
  pcsc_.Connected = PcscCode::SharingViolation;
  FreeAfter(0.5, [this] { pcsc_.Connected = PcscCode::Success; });
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_NEAR(SecondsPassed(), 0.5, 0.05);
}

TEST_F(SharedReaderTest, RequestIccWaitsNoLongerThanItIsTold) {
  pcsc_.Connected = PcscCode::SharingViolation;
  EXPECT_EQ(AskTerminal(RequestIcc), "code -127");
  EXPECT_NEAR(SecondsPassed(), 1.0, 0.01);
  EXPECT_EQ(AskTerminal("201201000100"), "code -127");
  EXPECT_NEAR(SecondsPassed(), 1.0, 0.01) << "no second was given";
  Reader().IsHeld = true;
  EXPECT_EQ(AskTerminal(RequestIcc5), "code -127");
  EXPECT_NEAR(SecondsPassed(), 6.0, 0.01);
}

// Some services return at once from a question that they were to wait with.
TEST_F(SharedReaderTest, AServiceThatDoesNotWaitIsNotAskedWithoutAPause) {
  pcsc_.ReturnsAtOnce = true;
  Reader().HasCard = false;
  EXPECT_EQ(AskTerminal(RequestIcc5), "6200");
  EXPECT_NEAR(SecondsPassed(), 5.0, 0.01);
  constexpr int MostInASecond = 40;
  EXPECT_LE(pcsc_.StateQuestions, 5 * MostInASecond);
}

TEST_F(SharedReaderTest, AServiceThatDoesNotWaitTellsOfACardAllTheSame) {
  pcsc_.ReturnsAtOnce = true;
  Reader().HasCard = false;
  FreeAfter(0.5, [this] { Reader().HasCard = true; });
  EXPECT_EQ(AskTerminal(RequestIcc5), "9001");
  EXPECT_NEAR(SecondsPassed(), 0.5, 0.05);
}

TEST_F(SharedReaderTest, AHeldCardMayBePulledWhileItIsWaitedFor) {
  Reader().IsHeld = true;
  FreeAfter(0.5, [this] {
    Reader().IsHeld = false;
    Reader().HasCard = false;
  });
  EXPECT_EQ(AskTerminal(RequestIcc), "6200");
  EXPECT_NEAR(SecondsPassed(), 1.0, 0.01);
  EXPECT_EQ(Trouble(), PortTroubleKind::None);
}

// RESET ICC leaves the connection and takes it up again; the client library would wait for whoever
// waits for the card without end.
TEST_F(SharedReaderTest, ResetIccTakesTheCardBackFromWhoeverCameInBetween) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.WhileDisconnecting = [this] { pcsc_.Connected = PcscCode::SharingViolation; };
  FreeAfter(0.5, [this] { pcsc_.Connected = PcscCode::Success; });
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_NEAR(SecondsPassed(), 0.5, 0.05);
  EXPECT_EQ(AskCard(Select), "9000");
}

TEST_F(SharedReaderTest, ResetIccGivesUpAfterTwoSeconds) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.WhileDisconnecting = [this] { pcsc_.Connected = PcscCode::SharingViolation; };
  EXPECT_EQ(AskTerminal(ResetIcc), "code -127");
  EXPECT_NEAR(SecondsPassed(), 2.0, 0.01);
  EXPECT_EQ(Trouble(), PortTroubleKind::CardHeld);
  EXPECT_EQ(AskCard(Select), "6F00") << "the card is no longer ours";
}

TEST_F(SharedReaderTest, ResetIccOfOurOwnCardLooksForNobodyElse) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  Reader().OtherState = reader_state::Exclusive;  // our own connection
  pcsc_.WhileDisconnecting = [this] { Reader().OtherState = 0; };
  pcsc_.Time += milliseconds(250);
  EXPECT_EQ(AskTerminal(ResetIcc), "9001");
  EXPECT_TRUE(pcsc_.Waits.empty());
}

// The service is left in two minds where another program came while the card was powered down.
TEST_F(SharedReaderTest, ACardThatTheServiceTakesForUnpoweredIsPoweredAnew) {
  pcsc_.Connected = PcscCode::UnpoweredCard;
  pcsc_.WhileDisconnecting = [this] { pcsc_.Connected = PcscCode::Success; };
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone", "power down", "connect alone"));
  EXPECT_EQ(Trouble(), PortTroubleKind::None);
}

// The service may let another program share our card that connects in the same instant.
TEST_F(SharedReaderTest, ACardThatIsNotOursAloneIsTakenUpAgainBeforeItsFirstAnswer) {
  for (const PcscCode code : {PcscCode::SharingViolation, PcscCode::ResetCard}) {
    for (const char* const activation : {RequestIcc, ResetIcc}) {
      pcsc_.Sent.clear();
      pcsc_.OnTransmit = [this, code](const Bytes&, Bytes& answer) {
        if (pcsc_.Sent.size() == 1) return code;
        answer = {0x90, 0x00};
        return PcscCode::Success;
      };
      EXPECT_EQ(AskTerminal(activation), "9001");
      pcsc_.Calls.clear();
      EXPECT_EQ(AskCard(Select), "9000");
      EXPECT_THAT(pcsc_.Calls, ElementsAre("connect alone")) << "left as it is";
      EXPECT_EQ(pcsc_.Sent.size(), 2U);
    }
    EXPECT_EQ(AskTerminal(ResetCt), "9000");
  }
}

TEST_F(SharedReaderTest, ACardThatIsNotOursAloneLaterOnIsRefused) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(AskCard(Select), "9000");
  pcsc_.OnTransmit = [](const Bytes&, Bytes&) { return PcscCode::SharingViolation; };
  EXPECT_EQ(AskCard(Select), "code -127");
  EXPECT_EQ(pcsc_.Sent.size(), 2U);
  EXPECT_EQ(Trouble(), PortTroubleKind::CardHeld);
}

TEST_F(SharedReaderTest, ACardThatIsTakenForGoodIsRefused) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.OnTransmit = [this](const Bytes&, Bytes&) {
    pcsc_.Connected = PcscCode::SharingViolation;
    return PcscCode::SharingViolation;
  };
  EXPECT_EQ(AskCard(Select), "code -127");
  EXPECT_NEAR(SecondsPassed(), 2.0, 0.01);
  EXPECT_EQ(Trouble(), PortTroubleKind::CardHeld);
}

TEST_F(SharedReaderTest, AContextForTheCardIsMadeOnce) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(AskTerminal(RequestIcc), "9001");
    EXPECT_EQ(AskTerminal(ResetIcc), "9001");
    EXPECT_EQ(AskTerminal(ResetCt), "9000");
  }
  EXPECT_EQ(pcsc_.Contexts, 2) << "one for questions, one for the card";
}

TEST_F(SharedReaderTest, ResetIccOfAReaderThatIsGoneFails) {
  for (const PcscCode code : {PcscCode::ReaderUnavailable, PcscCode::NoService}) {
    pcsc_.Disconnected = PcscCode::Success;
    EXPECT_EQ(AskTerminal(RequestIcc), "9001");
    pcsc_.Disconnected = code;
    const bool isService = code == PcscCode::NoService;
    EXPECT_EQ(AskTerminal(ResetIcc), isService ? "code -127" : "code -8");
    EXPECT_EQ(Trouble(), isService ? PortTroubleKind::NoService : PortTroubleKind::ReaderGone);
  }
}

struct TroubleRow {
  const char* Name;
  PcscCode Pcsc;
  const char* Answer;
  PortTroubleKind Trouble;
};

class CallTrouble : public SharedReaderTest, public testing::WithParamInterface<TroubleRow> {};

TEST_P(CallTrouble, IsThatOfTheConnection) {
  pcsc_.Connected = GetParam().Pcsc;
  EXPECT_EQ(AskTerminal(RequestIcc), GetParam().Answer);
  pcsc_.Connected = PcscCode::Success;
  EXPECT_EQ(Trouble(), GetParam().Trouble) << "although all is well by now";
  EXPECT_EQ(AskTerminal(CardStatus).substr(0, 4),
            GetParam().Pcsc == PcscCode::NoService ? "code" : "8001");
  EXPECT_EQ(Trouble(), GetParam().Trouble) << "to ask for the status is not to reach for the card";
  link_ = transport_.Open(0).Link;
  EXPECT_EQ(Trouble(), PortTroubleKind::None) << "opened anew";
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(Trouble(), PortTroubleKind::None);
}

INSTANTIATE_TEST_SUITE_P(
    Host, CallTrouble,
    testing::Values(
        TroubleRow{"Held", PcscCode::SharingViolation, "code -127", PortTroubleKind::CardHeld},
        TroubleRow{"SilentCard", PcscCode::UnresponsiveCard, "6400", PortTroubleKind::MuteCard},
        TroubleRow{"UnpoweredCard", PcscCode::UnpoweredCard, "6400", PortTroubleKind::MuteCard},
        TroubleRow{"AnotherFailure", PcscCode::InternalError, "6400", PortTroubleKind::None},
        TroubleRow{"ReaderUnplugged", PcscCode::ReaderUnavailable, "code -8",
                   PortTroubleKind::ReaderGone},
        TroubleRow{"UserRefused", PcscCode::SecurityViolation, "code -127",
                   PortTroubleKind::ServiceRefuses},
        TroubleRow{"ServiceEnded", PcscCode::NoService, "code -127", PortTroubleKind::NoService}),
    RowName<TroubleRow>);

TEST_F(SharedReaderTest, ATroubleEndsWithTheNextReachForTheCard) {
  pcsc_.Connected = PcscCode::SharingViolation;
  EXPECT_EQ(AskTerminal(RequestIcc), "code -127");
  EXPECT_EQ(Trouble(), PortTroubleKind::CardHeld);
  pcsc_.Connected = PcscCode::Success;
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  EXPECT_EQ(Trouble(), PortTroubleKind::None);
}

TEST_F(SharedReaderTest, ATroubleEndsWithTheNextReachForNoCard) {
  pcsc_.Connected = PcscCode::UnresponsiveCard;
  EXPECT_EQ(AskTerminal(RequestIcc), "6400");
  EXPECT_EQ(Trouble(), PortTroubleKind::MuteCard);
  Reader().HasCard = false;
  EXPECT_EQ(AskTerminal(RequestIcc), "6200");
  EXPECT_EQ(Trouble(), PortTroubleKind::None);
}

TEST_F(SharedReaderTest, OurOwnConnectionIsNoTroubleAndTheNextOneIs) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  Reader().OtherState = reader_state::Exclusive;
  EXPECT_EQ(Trouble(), PortTroubleKind::None) << "it is ours";
  EXPECT_EQ(AskTerminal(ResetCt), "9000");
  EXPECT_EQ(Trouble(), PortTroubleKind::CardHeld) << "it is another program's";
}

TEST_F(SharedReaderTest, AReaderUnpluggedDuringTheExchangeIsTold) {
  EXPECT_EQ(AskTerminal(RequestIcc), "9001");
  pcsc_.OnTransmit = [this](const Bytes&, Bytes&) {
    pcsc_.Readers.clear();
    return PcscCode::ReaderUnavailable;
  };
  EXPECT_EQ(AskCard(Select), "code -8");
  EXPECT_EQ(Trouble(), PortTroubleKind::ReaderGone);
  EXPECT_EQ(transport_.InfoOf(0).Name, "");
  EXPECT_EQ(transport_.InfoOf(1).Trouble, PortTroubleKind::NoReader) << "another number's";
}

TEST_F(SharedReaderTest, AReaderUnpluggedWhileWaitingIsTold) {
  Reader().HasCard = false;
  pcsc_.WhileWaiting = [this] { pcsc_.Readers.clear(); };
  EXPECT_EQ(AskTerminal(RequestIcc5), "code -8");
  EXPECT_EQ(Trouble(), PortTroubleKind::ReaderGone);
}

TEST(ServiceTrouble, ARefusedUserIsToldApartFromAServiceThatDoesNotRun) {
  // By its code or, in older versions, by ending the conversation at once.
  for (const PcscCode code :
       {PcscCode::SecurityViolation, PcscCode::CommunicationError, PcscCode::NoAccess}) {
    test::FakePcsc pcsc;
    pcsc.Established = code;
    PcscTransport transport(pcsc.Api());
    EXPECT_EQ(transport.Open(0).Code, code::HostError);
    EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::ServiceRefuses);
    EXPECT_EQ(transport.InfoOf(0).Trouble, PortTroubleKind::ServiceRefuses);
    pcsc.Established = PcscCode::NoService;
    EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::NoService);
    pcsc.Established = PcscCode::Success;
    pcsc.Listed = PcscCode::SecurityViolation;
    EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::ServiceRefuses);
  }
}

// A door behind which a call waits until it is opened.
class Door {
 public:
  void Wait() {
    std::unique_lock lock(mutex_);
    ++waiting_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isOpen_; });
  }
  void Open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
  }
  void AwaitVisitor() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_ > 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int waiting_ = 0;
  bool isOpen_ = false;
};

// Calls that do not return, one at a time; the service around them goes on.
class HungCallTest : public testing::Test {
 protected:
  static constexpr milliseconds AnswerTime{50};

  // The call comes back at last, and what it brought is given back.
  void ReleaseAll() {
    door_.Open();
    for (int i = 0; i < 500 && Contexts() != Released(); ++i) {
      std::this_thread::sleep_for(milliseconds(10));
    }
    EXPECT_EQ(Contexts(), Released());
  }
  [[nodiscard]] int Contexts() const { return contexts_; }
  [[nodiscard]] int Released() const { return released_; }
  // The fake counts in several threads here.
  PcscApi Counting() {
    PcscApi api = pcsc_.Api();
    api.EstablishContext = [this, establish = api.EstablishContext](PcscContext& context) {
      const PcscCode code = establish(context);
      if (code == PcscCode::Success) ++contexts_;
      return code;
    };
    api.ReleaseContext = [this](PcscContext) {
      ++released_;
      return PcscCode::Success;
    };
    return api;
  }

  test::FakePcsc pcsc_;
  Door door_;
  std::atomic<int> contexts_ = 0;
  std::atomic<int> released_ = 0;
};

TEST_F(HungCallTest, AConnectionThatDoesNotComeAboutIsTakenForAHeldCard) {
  PcscApi api = Counting();
  std::atomic<int> returned = 0;
  api.Connect = [this, &returned](PcscContext, const std::string&, CardSharing, std::uint32_t,
                                  PcscCard&, std::uint32_t&) {
    door_.Wait();
    ++returned;
    return PcscCode::Success;
  };
  std::atomic<int> given = 0;
  api.Disconnect = [&given](PcscCard, CardDisposition how) {
    if (how == CardDisposition::Leave) ++given;
    return PcscCode::Success;
  };
  {
    PcscTransport transport(api, AnswerTime);
    const auto link = transport.Open(0).Link;
    EXPECT_EQ(Ask(*link, Unit::Terminal, "201201000100"), "code -127");
    EXPECT_EQ(transport.InfoOf(0).Trouble, PortTroubleKind::CardHeld);
    EXPECT_EQ(Ask(*link, Unit::Terminal, CardStatus), "8001019000") << "the service still answers";
    EXPECT_EQ(Ask(*link, Unit::Terminal, "2013004600").substr(0, 4), "460F");
  }
  ReleaseAll();
  EXPECT_EQ(returned, 2);
  EXPECT_EQ(given, 2) << "cards that were reached too late are left as they are";
}

TEST_F(HungCallTest, AQuestionWithoutAnAnswerIsAServiceThatIsGone) {
  PcscApi api = Counting();
  const auto ask = api.GetStatusChange;
  std::atomic<bool> hangs = true;
  api.GetStatusChange = [this, &hangs, ask](PcscContext context, std::uint32_t longest,
                                            ReaderStatus& status) {
    if (hangs) door_.Wait();
    return ask(context, longest, status);
  };
  {
    PcscTransport transport(api, AnswerTime);
    auto link = transport.Open(0).Link;
    EXPECT_EQ(Ask(*link, Unit::Terminal, CardStatus), "code -127");
    EXPECT_EQ(Ask(*link, Unit::Terminal, CardStatus), "code -128");
    hangs = false;
    link = transport.Open(0).Link;
    EXPECT_EQ(Ask(*link, Unit::Terminal, CardStatus), "8001019000");
    EXPECT_EQ(Contexts(), 2) << "the one that does not return is not used again";
  }
  ReleaseAll();
}

TEST_F(HungCallTest, AListThatDoesNotComeIsNoService) {
  PcscApi api = Counting();
  const auto list = api.ListReaders;
  api.ListReaders = [this](PcscContext, std::span<char>, std::uint32_t&) {
    door_.Wait();
    return PcscCode::NoService;
  };
  {
    PcscTransport transport(api, AnswerTime);
    EXPECT_EQ(transport.Open(0).Code, code::HostError);
    EXPECT_EQ(transport.TroubleOfReaders(), PortTroubleKind::NoService);
  }
  ReleaseAll();
}

TEST_F(HungCallTest, AServiceThatOpensNoConversationIsNone) {
  PcscApi api = Counting();
  const auto establish = api.EstablishContext;
  api.EstablishContext = [this, establish](PcscContext& context) {
    door_.Wait();
    return establish(context);
  };
  {
    PcscTransport transport(api, AnswerTime);
    EXPECT_EQ(transport.Open(0).Code, code::HostError);
  }
  door_.Open();
  for (int i = 0; i < 500 && Released() == 0; ++i) std::this_thread::sleep_for(milliseconds(10));
  EXPECT_EQ(Contexts(), 1);
  EXPECT_EQ(Released(), 1) << "the late context";
}

TEST_F(HungCallTest, AnEndThatDoesNotComeIsWaitedForOnce) {
  PcscApi api = Counting();
  api.Disconnect = [this](PcscCard, CardDisposition) {
    door_.Wait();
    return PcscCode::Success;
  };
  {
    PcscTransport transport(api, AnswerTime);
    const auto link = transport.Open(0).Link;
    EXPECT_EQ(Ask(*link, Unit::Terminal, RequestIcc), "9001");
    EXPECT_EQ(Ask(*link, Unit::Terminal, ResetIcc), "code -10");
    EXPECT_EQ(Ask(*link, Unit::Card, Select), "6F00");
    EXPECT_EQ(Ask(*link, Unit::Terminal, ResetCt), "9000");
  }
  ReleaseAll();
}

}  // namespace
}  // namespace ctapi::host
