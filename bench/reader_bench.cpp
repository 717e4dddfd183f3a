// Reading a whole eGK in a PC/SC reader through the program's core and the built library, beside a
// bare PC/SC client that sends the same commands to the same card, with the same connection, reset
// and power-down. The card is a simulated one in the virtual reader of the system's own service.
// Bound: the read takes at most 1.3 times the bare client's time (ratio of the medians of
// interleaved pairs).

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>
#include <winscard.h>

#include "go_first.h"
#include "host/pcscd_service.h"
#include "host/virtual_egk.h"
#include "kvk/read_dispatcher.h"
#include "quiet_front_end.h"
#include "simulator/scenario.h"
#include "stopwatch.h"
#include "support/loaded_library.h"

namespace kartocheck::bench {
namespace {

using ctapi::test::Eventually;
using ctapi::test::PcscdService;
using ctapi::test::VirtualCard;
using Trace = std::vector<VirtualCard::Bytes>;

constexpr double Bound = 1.3;
constexpr int Pairs = 301;
constexpr int FirstReader = 8192;
constexpr const char* ReaderName = "Virtual PCD 00 00";

void Expect(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

// The program's way to the card: core and library.
class Program {
 public:
  // Repeats until the reader is there and its card announced.
  [[nodiscard]] bool IsReady() {
    if (api_.Init(1, FirstReader) != 0) return false;
    constexpr std::array<std::uint8_t, 5> CardStatus{0x20, 0x13, 0x00, 0x80, 0x00};
    constexpr std::uint8_t CardPresent = 0x01;
    std::uint8_t dad = 1;
    std::uint8_t sad = 2;
    std::array<std::uint8_t, CtSession::ResponseSize> response{};
    std::uint16_t length = response.size();
    const bool isIn = api_.Data(1, dad, sad, CardStatus, response, length) == 0 && length == 5 &&
                      response[2] == CardPresent;
    (void)api_.Close(1);
    return isIn;
  }

  void Read() {
    const ReadTarget target{session_,    Port(FirstReader), info_,    insured_,  egk_,
                            validation_, dialogs_,          display_, eventLoop_};
    Expect(ReadCardData(target) == ReadOutcome::Done, "the card was not read");
  }

 private:
  CtApiLibrary api_ = test::LoadedLibrary({QStringLiteral(HOST_LIBRARY)});
  QuietDialogs dialogs_;
  QuietDisplay display_;
  Lamps lamps_;
  QuietEventLoop eventLoop_;
  PerSlot<PortEntry> ports_;
  CtSession session_{{.api = api_,
                      .dialogs = dialogs_,
                      .lamps = lamps_,
                      .eventLoop = eventLoop_,
                      .ports = ports_,
                      .terminate = [](const auto&) { std::abort(); }}};
  ValidationSettings validation_;
  TerminalInfo info_;
  InsuredData insured_;
  EgkData egk_;
};

// PC/SC and nothing else.
class BareClient {
 public:
  BareClient() {
    Expect(SCardEstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &context_) == 0, "context");
  }
  ~BareClient() { (void)SCardReleaseContext(context_); }
  BareClient(const BareClient&) = delete;
  BareClient& operator=(const BareClient&) = delete;

  // Does again what the card has seen of a read: power on, commands, resets, power off.
  void Replay(const Trace& trace) {
    constexpr std::uint8_t Reset = 2;
    constexpr DWORD AnyProtocol = SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1;
    SCARDHANDLE card = 0;
    DWORD protocol = 0;
    Expect(SCardConnect(context_, ReaderName, SCARD_SHARE_EXCLUSIVE, AnyProtocol, &card,
                        &protocol) == SCARD_S_SUCCESS,
           "connect");
    for (const VirtualCard::Bytes& message : trace) {
      if (message.size() > 1) {
        const SCARD_IO_REQUEST request{protocol, sizeof(SCARD_IO_REQUEST)};
        std::array<std::uint8_t, 258> answer{};
        DWORD length = answer.size();
        Expect(SCardTransmit(card, &request, message.data(), message.size(), nullptr, answer.data(),
                             &length) == SCARD_S_SUCCESS,
               "transmit");
      } else if (message[0] == Reset) {
        Expect(SCardReconnect(card, SCARD_SHARE_EXCLUSIVE, AnyProtocol, SCARD_RESET_CARD,
                              &protocol) == SCARD_S_SUCCESS,
               "reset");
      }
    }
    Expect(SCardDisconnect(card, SCARD_UNPOWER_CARD) == SCARD_S_SUCCESS, "disconnect");
  }

 private:
  SCARDCONTEXT context_ = 0;
};

// What the card sees while the work is done, which ends with the card's power; the driver does not
// wait until the card has taken note of that.
template <typename Work>
Trace TraceOf(const VirtualCard& card, Work work) {
  const VirtualCard::Bytes powerOff{0};
  const auto before = static_cast<std::ptrdiff_t>(card.Trace().size());
  work();
  Trace trace;
  Expect(Eventually([&] {
           const Trace whole = card.Trace();
           trace.assign(whole.begin() + before, whole.end());
           return !trace.empty() && trace.back() == powerOff;
         }),
         "the card keeps its power");
  return trace;
}

// A card that takes some time for an answer, as real ones do: 30 milliseconds for a READ BINARY of
// 252 bytes at 115,200 baud. The virtual one answers at once.
VirtualCard::Behaviour TakingItsTime(VirtualCard::Behaviour card, std::chrono::milliseconds time) {
  if (time.count() == 0) return card;
  card.Transmit = [transmit = card.Transmit, time](const VirtualCard::Bytes& command) {
    std::this_thread::sleep_for(time);
    return transmit(command);
  };
  return card;
}

int Run(std::chrono::milliseconds cardTime) {
  if (!GoFirst()) std::puts("no right to go before others: the machine has to be idle");
  std::string reason = "no network namespace";
  std::unique_ptr<PcscdService> service;
  if (ctapi::test::EnterOwnNetwork()) service = PcscdService::Start(reason);
  if (!service) throw std::runtime_error(reason);
  ctapi::SimulatedPractice practice = ctapi::LoadScenario(SCENARIOS "/praxis.json");
  // The eGK of the first terminal lets its protected data be read.
  const VirtualCard card(TakingItsTime(ctapi::test::CardOf(*practice.TerminalAt(1)), cardTime));
  Program program;
  Expect(card.IsIn() && Eventually([&] { return program.IsReady(); }), "no card in the reader");
  BareClient bareClient;

  // A card that was just announced still has its power; after a read it has none.
  (void)TraceOf(card, [&] { program.Read(); });
  const Trace ofRead = TraceOf(card, [&] { program.Read(); });
  const Trace ofReplay = TraceOf(card, [&] { bareClient.Replay(ofRead); });
  Expect(ofRead == ofReplay, "the bare client does something else");

  std::vector<double> reads;
  std::vector<double> replays;
  for (int pair = 0; pair < Pairs; ++pair) {
    reads.push_back(MillisecondsOf([&] { program.Read(); }));
    replays.push_back(MillisecondsOf([&] { bareClient.Replay(ofRead); }));
  }
  const double ratio = Median(reads) / Median(replays);
  std::printf("eGK in a PC/SC reader: read %.2f ms, bare client %.2f ms, ratio %.2f (bound %.2f)\n",
              Median(reads), Median(replays), ratio, Bound);
  return ratio <= Bound ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace kartocheck::bench

// The argument: milliseconds that the card takes for an answer; none without one.
int main(int argc, char** argv) {
  try {
    return kartocheck::bench::Run(std::chrono::milliseconds(argc > 1 ? std::atoi(argv[1]) : 0));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
