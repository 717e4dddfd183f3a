#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

#include "host/host_library.h"
#include "host/pcsc_service.h"
#include "host/pcsc_transport.h"
#include "host/pcscd_fixture.h"
#include "host/service_view.h"
#include "host/transports.h"
#include "host/virtual_egk.h"
#include "protocol/com_table.h"
#include "simulator/hex.h"
#include "simulator/scenario.h"

// The library against the system's PC/SC service with a virtual reader, and a simulated eGK in it.
namespace ctapi::host {
namespace {

using ctapi::test::Eventually;
using ctapi::test::PcscdService;
using ctapi::test::ServiceSeesACard;
using ctapi::test::ToHex;
using ctapi::test::VirtualCard;

constexpr std::uint16_t FirstReader = 8192;
constexpr const char* ResetCt = "2011000000";
constexpr const char* RequestIcc = "201201000101";
constexpr const char* SelectHca = "00A4040C06D27600000102";
constexpr const char* ReadPd = "00B0810000";

class PcscdTest : public ctapi::test::PcscdFixture {
 protected:
  void TearDown() override { card_.reset(); }

  // The card of the simulated USB terminal; how its answers are changed can be told.
  using Change = std::function<std::optional<Bytes>(Bytes answer)>;
  void InsertEgk(Change change = [](Bytes answer) { return answer; }) {
    VirtualCard::Behaviour egk = ctapi::test::CardOf(*practice_.TerminalAt(FirstReader));
    egk.Transmit = [answer = egk.Transmit, change](const Bytes& command) {
      return change(*answer(command));
    };
    Insert(std::move(egk));
  }
  void Insert(VirtualCard::Behaviour behaviour) {
    card_ = std::make_unique<VirtualCard>(std::move(behaviour));
    ASSERT_TRUE(card_->IsIn());
  }

  std::string Ask(std::uint8_t unit, const char* command, std::size_t room = 4098) {
    std::uint8_t dad = unit;
    std::uint8_t sad = 2;
    std::vector<std::uint8_t> response(room);
    std::uint16_t length = 0;
    const int code =
        library_.Data(1, dad, sad, *BytesFromHex(command), std::span(response), length);
    return code == 0 ? ToHex(ByteView(response).first(length)) : "code " + std::to_string(code);
  }
  // The reader appears a moment after the service, the card a moment after it was put in.
  [[nodiscard]] bool OpenReader() {
    return Eventually([this] { return library_.Init(1, FirstReader) == code::Success; });
  }
  void ActivateCard() {
    ASSERT_TRUE(OpenReader());
    ASSERT_EQ(Ask(1, "201201000105"), "9001");
  }

  SimulatedPractice practice_ = LoadScenario(BUNDLED_SCENARIOS "/praxis.json");
  std::unique_ptr<VirtualCard> card_;
  HostLibrary library_{MakeTransports()};
};

TEST_F(PcscdTest, ReadsAnEgk) {
  InsertEgk();
  ASSERT_TRUE(OpenReader());
  EXPECT_EQ(Ask(1, "2013008100"), "8101019000");
  // "Virtu" "PCD  "; the driver tells its version or none.
  EXPECT_EQ(Ask(1, "2013004600").substr(0, 24), "460F56697274755043442020");
  EXPECT_EQ(Ask(1, ResetCt), "9000");
  EXPECT_EQ(Ask(1, "201201000105"), "9001");
  EXPECT_EQ(Ask(1, "2013008000"), "8001059000");
  EXPECT_EQ(Ask(1, RequestIcc), "6201");
  EXPECT_EQ(Ask(0, SelectHca), "9000");
  auto& terminal = *practice_.TerminalAt(FirstReader);
  const std::string pd = Ask(0, ReadPd);
  EXPECT_EQ(pd, ToHex(terminal.TransmitToCard(*BytesFromHex(ReadPd))));
  EXPECT_GT(pd.size(), 100U);
  EXPECT_EQ(Ask(1, "20110100"), "9001");
  EXPECT_EQ(Ask(0, SelectHca), "9000");
  EXPECT_EQ(Ask(1, ResetCt), "9000");
  EXPECT_EQ(Ask(0, SelectHca), "6F00");
  EXPECT_EQ(library_.Close(1), 0);
}

TEST_F(PcscdTest, WithoutACardTheReaderWaitsAndSaysSo) {
  ASSERT_TRUE(OpenReader());
  EXPECT_EQ(Ask(1, "2013008000"), "8001009000");
  EXPECT_EQ(Ask(1, RequestIcc), "6200");
  EXPECT_EQ(Ask(1, "20110100"), "6400");
}

TEST_F(PcscdTest, ACardPutInWhileWaitingIsTaken) {
  ASSERT_TRUE(OpenReader());
  std::thread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    InsertEgk();
  });
  EXPECT_EQ(Ask(1, "20120100010A"), "9001");
  later.join();
}

TEST_F(PcscdTest, AMuteCardIsTold) {
  // The driver takes an empty answer to reset for an empty slot.
  Insert({.Atr = {0x00}, .Transmit = [](const Bytes&) { return Bytes{}; }});
  ASSERT_TRUE(OpenReader());
  EXPECT_TRUE(Eventually([this] { return Ask(1, "2013008000") == "8001019000"; }));
  EXPECT_EQ(Ask(1, RequestIcc), "6400");
  EXPECT_EQ(Ask(1, "20110100"), "6400");
}

TEST_F(PcscdTest, ACardPulledDuringAnExchangeIsGone) {
  int exchanges = 0;
  InsertEgk([&](Bytes answer) -> std::optional<Bytes> {
    if (++exchanges == 2) return std::nullopt;
    return answer;
  });
  ActivateCard();
  EXPECT_EQ(Ask(0, SelectHca), "9000");
  EXPECT_EQ(Ask(0, ReadPd), "code -8");
  EXPECT_EQ(Ask(0, ReadPd), "6F00");
}

TEST_F(PcscdTest, ACardPulledBetweenExchangesIsGone) {
  InsertEgk();
  ActivateCard();
  card_.reset();
  EXPECT_EQ(Ask(0, SelectHca), "code -8");
  EXPECT_TRUE(Eventually([this] { return Ask(1, "2013008000") == "8001009000"; }));
}

TEST_F(PcscdTest, EjectIccWaitsForTheRemoval) {
  InsertEgk();
  ActivateCard();
  EXPECT_EQ(Ask(1, "201501010101"), "6200");
  std::thread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    card_.reset();
  });
  EXPECT_EQ(Ask(1, "20150101010A"), "9001");
  later.join();
}

TEST_F(PcscdTest, AnotherCardIsAskedForAnew) {
  InsertEgk();
  ActivateCard();
  card_.reset();
  ASSERT_TRUE(Eventually([] { return !ServiceSeesACard(); }));
  InsertEgk();
  ASSERT_TRUE(Eventually([] { return ServiceSeesACard(); }));
  EXPECT_EQ(Ask(0, SelectHca), "code -8");
  EXPECT_EQ(Ask(1, RequestIcc), "9001");
  EXPECT_EQ(Ask(0, SelectHca), "9000");
}

TEST_F(PcscdTest, TellsTheAnswerToReset) {
  InsertEgk();
  ActivateCard();
  const std::string atr = Ask(1, "20110101");
  EXPECT_EQ(atr, ToHex(ctapi::test::CardOf(*practice_.TerminalAt(FirstReader)).Atr) + "9001");
  EXPECT_EQ(Ask(1, ResetCt), "9000");
  EXPECT_EQ(Ask(1, "201201010105"), atr);
}

TEST_F(PcscdTest, AnIndexBehindTheLastReaderIsRefused) {
  ASSERT_TRUE(OpenReader());
  EXPECT_EQ(library_.Init(2, FirstReader + 5), code::InvalidParameter);
  EXPECT_EQ(library_.Init(2, FirstReader + 255), code::InvalidParameter);
}

// The reader's number stays its own, so that it leads to no other reader while that one is away.
TEST_F(PcscdTest, AReaderThatIsGoneAtInitIsRefused) {
  ASSERT_TRUE(OpenReader());
  EXPECT_EQ(library_.Close(1), 0);
  service_->Kill();
  std::string reason;
  service_ = PcscdService::Start(reason, PcscdService::Readers::None);
  ASSERT_TRUE(service_) << reason;
  EXPECT_EQ(library_.Init(1, FirstReader), code::InvalidParameter);
  service_->Kill();
  service_ = PcscdService::Start(reason);
  ASSERT_TRUE(service_) << reason;
  EXPECT_TRUE(OpenReader());
}

TEST_F(PcscdTest, AnAnswerTooLongForTheBufferIsTold) {
  InsertEgk();
  ActivateCard();
  EXPECT_EQ(Ask(0, SelectHca), "9000");
  EXPECT_EQ(Ask(0, ReadPd, 20), "code -11");
  EXPECT_EQ(Ask(0, SelectHca), "9000");
}

TEST_F(PcscdTest, AnAnswerOfOneByteIsBroken) {
  InsertEgk([](const Bytes&) { return Bytes{0x90}; });
  ActivateCard();
  EXPECT_EQ(Ask(0, SelectHca), "code -10");
}

TEST_F(PcscdTest, TheServiceKilledInTheMiddleIsTold) {
  InsertEgk([this](Bytes answer) {
    service_->Kill();
    return answer;
  });
  ActivateCard();
  EXPECT_EQ(Ask(0, SelectHca), "code -127");
  EXPECT_EQ(Ask(0, SelectHca), "code -128");
  EXPECT_EQ(library_.Close(1), 0);
  EXPECT_EQ(library_.Init(1, FirstReader), code::HostError);
  card_.reset();
  std::string reason;
  service_ = PcscdService::Start(reason);
  ASSERT_TRUE(service_) << reason;
  InsertEgk();
  ActivateCard();
}

TEST_F(PcscdTest, TheServiceKilledBetweenCommandsIsTold) {
  for (const char* const command : {"2013008000", RequestIcc, "20110100", "201501010101"}) {
    ASSERT_TRUE(OpenReader());
    service_->Kill();
    EXPECT_EQ(Ask(1, command), "code -127") << command;
    EXPECT_EQ(Ask(1, command), "code -128") << command;
    EXPECT_EQ(Ask(0, SelectHca), "code -128") << command;
    EXPECT_EQ(library_.Close(1), 0);
    std::string reason;
    service_ = PcscdService::Start(reason);
    ASSERT_TRUE(service_) << reason;
  }
}

TEST_F(PcscdTest, TheServiceKilledWithAnActiveCardIsTold) {
  InsertEgk();
  ActivateCard();
  service_->Kill();
  EXPECT_EQ(Ask(1, ResetCt), "code -127");
  EXPECT_EQ(Ask(1, ResetCt), "code -128");
}

TEST_F(PcscdTest, WithoutTheServiceInitIsRefused) {
  service_->Kill();
  EXPECT_EQ(library_.Init(1, FirstReader), code::HostError);
}

// The service would let us wait until the other program ends its transaction.
TEST_F(PcscdTest, NobodyWaitsForAnotherProgramsTransaction) {
  InsertEgk();
  ASSERT_TRUE(OpenReader());
  const auto api = LoadPcscApi();
  ASSERT_TRUE(api);
  void* const client = ::dlopen("libpcsclite.so.1", RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(client, nullptr);
  const auto begin = reinterpret_cast<long (*)(long)>(::dlsym(client, "SCardBeginTransaction"));
  ASSERT_NE(begin, nullptr);
  PcscContext context = 0;
  ASSERT_EQ(api->EstablishContext(context), PcscCode::Success);
  PcscCard handle = 0;
  std::uint32_t protocol = 0;
  ASSERT_TRUE(Eventually([&] {
    return api->Connect(context, "Virtual PCD 00 00", CardSharing::Shared, card_protocol::T1,
                        handle, protocol) == PcscCode::Success;
  }));
  ASSERT_EQ(begin(static_cast<long>(handle)), 0);

  auto answers = std::async(std::launch::async, [this] {
    return std::vector{Ask(1, "2013004600").substr(0, 4), Ask(1, RequestIcc), Ask(1, "20110100")};
  });
  const bool isDone = answers.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
  (void)api->Disconnect(handle, CardDisposition::Leave);
  (void)api->ReleaseContext(context);
  ::dlclose(client);
  EXPECT_TRUE(isDone);
  EXPECT_EQ(answers.get(), (std::vector<std::string>{"460F", "code -127", "code -127"}));
  EXPECT_EQ(Ask(1, RequestIcc), "9001");
}

// Another program's connection, of either kind, keeps the card from us.
TEST_F(PcscdTest, ACardHeldByAnotherProgramIsRefused) {
  InsertEgk();
  ASSERT_TRUE(OpenReader());
  const auto api = LoadPcscApi();
  ASSERT_TRUE(api);
  PcscContext context = 0;
  ASSERT_EQ(api->EstablishContext(context), PcscCode::Success);
  for (const CardSharing mode : {CardSharing::Shared, CardSharing::Exclusive}) {
    PcscCard handle = 0;
    std::uint32_t protocol = 0;
    ASSERT_TRUE(Eventually([&] {
      return api->Connect(context, "Virtual PCD 00 00", mode, card_protocol::T1, handle,
                          protocol) == PcscCode::Success;
    }));
    EXPECT_EQ(Ask(1, RequestIcc), "code -127");
    (void)api->Disconnect(handle, CardDisposition::Leave);
  }
  EXPECT_EQ(Ask(1, RequestIcc), "9001");
  EXPECT_EQ(Ask(0, SelectHca), "9000");
  // And the other way round: nobody reaches our card, so that nobody can reset it either.
  for (const CardSharing mode :
       {CardSharing::Shared, CardSharing::Exclusive, CardSharing::Direct}) {
    PcscCard handle = 0;
    std::uint32_t protocol = 0;
    EXPECT_EQ(api->Connect(context, "Virtual PCD 00 00", mode,
                           mode == CardSharing::Direct ? card_protocol::None : card_protocol::T1,
                           handle, protocol),
              PcscCode::SharingViolation);
  }
  EXPECT_EQ(Ask(0, ReadPd),
            ToHex(practice_.TerminalAt(FirstReader)->TransmitToCard(*BytesFromHex(ReadPd))));
  (void)api->ReleaseContext(context);
}

TEST_F(PcscdTest, ACardThatIsHeldForAMomentIsWaitedFor) {
  InsertEgk();
  ASSERT_TRUE(OpenReader());
  const auto api = LoadPcscApi();
  ASSERT_TRUE(api);
  PcscContext context = 0;
  ASSERT_EQ(api->EstablishContext(context), PcscCode::Success);
  PcscCard handle = 0;
  std::uint32_t protocol = 0;
  ASSERT_TRUE(Eventually([&] {
    return api->Connect(context, "Virtual PCD 00 00", CardSharing::Shared, card_protocol::T1,
                        handle, protocol) == PcscCode::Success;
  }));
  std::thread later([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    (void)api->Disconnect(handle, CardDisposition::Leave);
  });
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Ask(1, "201201000105"), "9001");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
  later.join();
  (void)api->ReleaseContext(context);
  PortInfo info;
  EXPECT_EQ(library_.InfoOf(FirstReader, info), code::Success);
  // Our own connection is no trouble either.
  EXPECT_EQ(info.Trouble, PortTroubleKind::None);
}

// What the client library does then is never to return while the card is held.
TEST_F(PcscdTest, TheClientLibraryTriesNothingForEver) {
  ASSERT_TRUE(LoadPcscApi());
  EXPECT_NE(std::getenv("PCSCLITE_NO_BLOCKING"), nullptr);
}

// The program with this library, from the sweep to the insured data.
TEST_F(PcscdTest, TheProgramFindsTheReaderAndReadsTheEgk) {
  InsertEgk();
  ASSERT_TRUE(OpenReader());
  ASSERT_TRUE(Eventually([this] { return Ask(1, "2013008000") == "8001019000"; }));
  ASSERT_EQ(library_.Close(1), 0);
  FILE* const program = ::popen(KARTOCHECK_PROGRAM " --console --json 2>/dev/null", "r");
  ASSERT_NE(program, nullptr);
  std::string report;
  for (int c = std::fgetc(program); c != EOF; c = std::fgetc(program)) {
    report += static_cast<char>(c);
  }
  EXPECT_EQ(::pclose(program), 0) << report;
  EXPECT_NE(report.find("\"8192\""), std::string::npos) << report;
  EXPECT_NE(report.find("80276001230000000017"), std::string::npos) << report;
  EXPECT_NE(report.find("Größl-Öztürk"), std::string::npos) << report;
  // One of the status check, 13 of every read, 2 for EF.GVD, and two pieces each of VD and PD.
  EXPECT_EQ(card_->Commands().size(), 1U + 13 + 2 + 4);
}

// Asks for the card's name over and over, 20 ms apart.
class OtherProgram {
 public:
  OtherProgram() : process_(::fork()) {
    if (process_ != 0) return;
    (void)::setpgid(0, 0);
    (void)::execl(
        "/bin/sh", "sh", "-c",
        "while :; do opensc-tool -n >/dev/null 2>&1; echo $? >>/run/other; sleep 0.02; done",
        nullptr);
    ::_exit(127);
  }
  ~OtherProgram() {
    (void)::setpgid(process_, process_);
    (void)::kill(-process_, SIGKILL);
    (void)::waitpid(process_, nullptr, 0);
  }
  // How often it came, and how often it got the card.
  [[nodiscard]] static std::pair<int, int> Turns() {
    std::ifstream exits("/run/other");
    std::pair<int, int> turns;
    for (int status = 0; exits >> status; ++turns.first) turns.second += status == 0 ? 1 : 0;
    return turns;
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

 private:
  pid_t process_;
};

// Takes minutes, and opensc-tool of the package opensc: run by hand.
TEST_F(PcscdTest, DISABLED_ReadsBesideAnotherProgram) {
  ASSERT_EQ(std::system("command -v opensc-tool >/dev/null"), 0);
  constexpr int Reads = 2000;
  constexpr std::chrono::seconds Longest{30};
  InsertEgk();
  ASSERT_TRUE(OpenReader());
  ASSERT_EQ(library_.Close(1), 0);
  const std::vector<std::pair<std::uint8_t, const char*>> commands{
      {1, ResetCt},    {1, RequestIcc}, {0, SelectHca}, {0, ReadPd},
      {1, "20110100"}, {0, SelectHca},  {0, ReadPd},    {1, "201501000100"}};
  const auto read = [&]() -> std::string {
    if (const int code = library_.Init(1, FirstReader); code != 0) {
      return "init: code " + std::to_string(code);
    }
    std::string failure;
    for (const auto& [unit, command] : commands) {
      const std::string answer = Ask(unit, command);
      const std::string word =
          answer.substr(answer.size() - std::min<std::size_t>(4, answer.size()));
      if (word == "9000" || word == "9001") continue;
      failure = std::string(command) + ": " + answer;
      break;
    }
    (void)library_.Close(1);
    return failure;
  };
  int succeeded = 0;
  std::map<std::string, int> failures;
  double longest = 0;
  const auto begin = std::chrono::steady_clock::now();
  {
    const OtherProgram other;
    for (int i = 0; i < Reads; ++i) {
      const auto start = std::chrono::steady_clock::now();
      auto result = std::async(std::launch::async, read);
      if (result.wait_for(Longest) != std::future_status::ready) {
        std::printf("hung at read %d\n", i);
        std::fflush(stdout);
        std::_Exit(EXIT_FAILURE);
      }
      const std::string failure = result.get();
      const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
      longest = std::max(longest, taken.count());
      failure.empty() ? ++succeeded : ++failures[failure];
    }
  }
  const std::chrono::duration<double> whole = std::chrono::steady_clock::now() - begin;
  std::printf("%d reads in %.0f s: 0 hung, %d succeeded, %d failed; the longest took %.2f s\n",
              Reads, whole.count(), succeeded, Reads - succeeded, longest);
  const auto [turns, successes] = OtherProgram::Turns();
  std::printf("the other program came %d times and got the card %d times\n", turns, successes);
  EXPECT_GT(successes, 0);
  for (const auto& [failure, times] : failures) {
    std::printf("  %4d times %s\n", times, failure.c_str());
  }
  // Another program may come in the same instant in the middle of a read, too.
  EXPECT_GE(succeeded, Reads * 99 / 100);
  EXPECT_EQ(read(), "") << "alone again";
}

TEST_F(PcscdTest, ASweepOverAllPortsFindsTheReader) {
  ASSERT_TRUE(OpenReader());
  ASSERT_EQ(library_.Close(1), 0);
  setenv(ctapi::ComTableVariable, "", 1);
  std::vector<int> found;
  for (const int first : {1, 8192}) {
    for (int pn = first; pn < first + 256; ++pn) {
      if (library_.Init(1, static_cast<std::uint16_t>(pn)) != code::Success) continue;
      found.push_back(pn);
      EXPECT_EQ(library_.Close(1), 0);
    }
  }
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(found.front(), 8192);
}

}  // namespace
}  // namespace ctapi::host
