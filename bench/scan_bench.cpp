// The port scan beside the waits that it has to keep, and the sweep over all CT-API port numbers.
// Bounds: four silent ports take at most 1.1 times the sum of their waits (counter times_waits);
// the sweep over a library that answers at once takes at most 1 ms a port (counter ms_a_port).

#include <QCoreApplication>

#include <benchmark/benchmark.h>
#include <chrono>
#include <sstream>

#include "app/bas_mkt_test.h"
#include "console/console_front_end.h"
#include "discovery/port_sweep.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "ui/main_window/port_flow.h"

namespace kartocheck::bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int ComPorts = 4;
// A wait for the line state and one for each of five settings, a port.
constexpr Milliseconds Waits{ComPorts * (500 + 5 * 210)};

template <typename Work>
Milliseconds TimeOf(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::steady_clock::now() - start;
}

// The program over ports that are there and silent.
struct Program {
  Program() {
    for (std::uint16_t pn = 1; pn <= ComPorts; ++pn) practice.Attach(pn, {});
  }

  ctapi::SimulatedPractice practice;
  CtApiSimulated api{practice};
  SerialPortSimulated serial{practice};
  PortDirectorySimulated directory{practice};
  QtEventLoop eventLoop;
  std::ostringstream messages;
  ConsoleFrontEnd frontEnd{messages, {}, StoredRecords::Keep};
  Bas_MKT_Test module{{.api = api,
                       .dialogs = frontEnd,
                       .display = frontEnd,
                       .eventLoop = eventLoop,
                       .serial = serial,
                       .directory = directory,
                       .terminate = [](const auto&) { std::abort(); }}};
  ViewState view;
  PortFlow ports{module, frontEnd, view};
};

void ScanFourSilentPorts(benchmark::State& state) {
  Program program;
  Milliseconds taken{0};
  for ([[maybe_unused]] auto _ : state) {
    taken += TimeOf([&] {
      for (int pn = 1; pn <= ComPorts; ++pn) program.ports.Scan(Port(pn));
    });
  }
  state.counters["times_waits"] = taken / (Waits * static_cast<double>(state.iterations()));
}
BENCHMARK(ScanFourSilentPorts)->Iterations(1)->Unit(benchmark::kMillisecond);

void SweepAllPorts(benchmark::State& state) {
  Program program;
  Milliseconds taken{0};
  for ([[maybe_unused]] auto _ : state) {
    taken += TimeOf([&] { program.ports.SweepFurtherPorts(); });
  }
  state.counters["ms_a_port"] =
      taken.count() / (SweepPortCount * static_cast<double>(state.iterations()));
}
BENCHMARK(SweepAllPorts)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kartocheck::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
