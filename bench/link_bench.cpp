// An exchange through the session, with a front end that does nothing, beside the bare library
// call. Bound: at most 20 microseconds more (counter over_bare_call_us).

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>

#include "quiet_front_end.h"
#include "stopwatch.h"
#include "terminal/command_catalogue.h"
#include "terminal/ct_session.h"

namespace kartocheck::bench {
namespace {

// Answers every command with as many bytes as it was told to.
class TrivialApi final : public CtApi {
 public:
  explicit TrivialApi(std::uint16_t answerLength) : answerLength_(answerLength) {}

  [[nodiscard]] std::int8_t Init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) override { return 0; }
  [[nodiscard]] std::int8_t Data(std::uint16_t /*ctn*/, std::uint8_t& /*dad*/, std::uint8_t& sad,
                                 std::span<const std::uint8_t> /*command*/,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override {
    std::fill_n(response.begin(), answerLength_, std::uint8_t{0x90});
    responseLength = answerLength_;
    sad = 1;
    return 0;
  }
  [[nodiscard]] std::int8_t Close(std::uint16_t /*ctn*/) override { return 0; }
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t /*ctn*/, std::int32_t& baud) override {
    baud = 9600;
    return 0;
  }

 private:
  std::uint16_t answerLength_;
};

void Compare(benchmark::State& state, CtApi& api) {
  constexpr std::array<std::uint8_t, 5> Command{0x20, 0x11, 0x00, 0x00, 0x00};
  std::array<std::uint8_t, CtSession::ResponseSize> buffer{};
  const auto call = [&] {
    std::uint8_t dad = 1;
    std::uint8_t sad = 2;
    std::uint16_t length = CtSession::ResponseSize;
    if (api.Data(1, dad, sad, Command, buffer, length) != 0) state.SkipWithError("failed");
    benchmark::DoNotOptimize(buffer);
  };

  QuietDialogs dialogs;
  Lamps lamps;
  QuietEventLoop eventLoop;
  PerSlot<PortEntry> ports;
  CtSession session({.api = api,
                     .dialogs = dialogs,
                     .lamps = lamps,
                     .eventLoop = eventLoop,
                     .ports = ports,
                     .terminate = [](const auto&) { std::abort(); }});
  const auto exchange = [&] {
    CtAnswer answer = session.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
    if (!answer.Succeeded()) state.SkipWithError("failed");
    benchmark::DoNotOptimize(answer);
  };

  for ([[maybe_unused]] auto _ : state) exchange();
  const double bare = MicrosecondsOf(call);
  const double whole = MicrosecondsOf(exchange);
  state.counters["bare_call_us"] = bare;
  state.counters["exchange_us"] = whole;
  state.counters["over_bare_call_us"] = whole - bare;
}

void TrivialLibrary(benchmark::State& state) {
  TrivialApi api(static_cast<std::uint16_t>(state.range(0)));
  Compare(state, api);
}

// A status word, a full READ BINARY, the largest answer of all.
BENCHMARK(TrivialLibrary)->Arg(2)->Arg(258)->Arg(CtSession::ResponseSize);

}  // namespace
}  // namespace kartocheck::bench

BENCHMARK_MAIN();
