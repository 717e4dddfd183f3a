// Reading a whole eGK from an in-process simulated terminal: open, requests, every file, documents
// decompressed, validated and mapped, reset, close. The counter "beyond_documents_ms" is the
// processor time of the read less that of its three documents alone. Bound: 3 ms.

#include <benchmark/benchmark.h>
#include <ctime>

#include "egk/vsd_decoder.h"
#include "kvk/read_dispatcher.h"
#include "platform/simulated/ct_api_simulated.h"
#include "quiet_front_end.h"
#include "simulator/scenario.h"

namespace kartocheck::bench {
namespace {

double ProcessorMilliseconds() {
  return 1'000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Everything a read needs, on the bundled practice's terminal with an eGK on COM 1.
struct Practice {
  Practice() {
    LoadSchemas(validation, {QStringLiteral(VSD_SCHEMAS)});
    validation.isOn = true;
  }

  void Read() {
    if (ReadCardData({session, Port(1), info, insured, egk, validation, dialogs, display,
                      eventLoop}) != ReadOutcome::Done) {
      throw std::runtime_error("the card was not read");
    }
  }

  // Validates and maps the texts of the last read again; a text that is not gzip data comes through
  // the decompression unchanged.
  void ReadDocuments() {
    InsuredData found;
    EgkData again;
    const VsdTarget target{again, found, validation, display, eventLoop};
    const auto text = [this](VsdKind kind) { return egk.documents[kind].xmlText.toLatin1(); };
    benchmark::DoNotOptimize(DecompressPd(text(VsdKind::Pd), target));
    benchmark::DoNotOptimize(DecompressVd(text(VsdKind::Vd), target));
    benchmark::DoNotOptimize(DecompressGvd(text(VsdKind::Gvd), target));
  }

  ctapi::SimulatedPractice practice = ctapi::LoadScenario(SCENARIOS "/praxis.json");
  CtApiSimulated api{practice};
  QuietDialogs dialogs;
  QuietDisplay display;
  Lamps lamps;
  QuietEventLoop eventLoop;
  PerSlot<PortEntry> ports;
  CtSession session{{.api = api,
                     .dialogs = dialogs,
                     .lamps = lamps,
                     .eventLoop = eventLoop,
                     .ports = ports,
                     .terminate = [](const auto&) { std::abort(); }}};
  ValidationSettings validation;
  TerminalInfo info;
  InsuredData insured;
  EgkData egk;
};

void ReadWholeEgk(benchmark::State& state) {
  Practice practice;
  practice.Read();
  double reads = 0;
  double documents = 0;
  for ([[maybe_unused]] auto _ : state) {
    const double start = ProcessorMilliseconds();
    practice.Read();
    const double between = ProcessorMilliseconds();
    practice.ReadDocuments();
    reads += between - start;
    documents += ProcessorMilliseconds() - between;
  }
  const auto rounds = static_cast<double>(state.iterations());
  state.counters["read_ms"] = reads / rounds;
  state.counters["beyond_documents_ms"] = (reads - documents) / rounds;
}
BENCHMARK(ReadWholeEgk)->Unit(benchmark::kMillisecond)->MinTime(2);

}  // namespace
}  // namespace kartocheck::bench

BENCHMARK_MAIN();
