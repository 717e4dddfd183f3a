// The sweep over all CT-API port numbers as the window shows it: every text and every step of the
// progress bar is painted. Bound: at most 1 ms a port (counter ms_a_port).

#include <QApplication>

#include <benchmark/benchmark.h>
#include <chrono>

#include "app/bas_mkt_test.h"
#include "discovery/port_sweep.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

void SweepInTheWindow(benchmark::State& state) {
  ctapi::SimulatedPractice practice;
  CtApiSimulated api{practice};
  SerialPortSimulated serial{practice};
  const PortDirectorySimulated directory{practice};
  QtEventLoop eventLoop;
  Form_MKT_Test window({});
  Bas_MKT_Test module({.api = api,
                       .dialogs = window.Boxes(),
                       .display = window,
                       .eventLoop = eventLoop,
                       .serial = serial,
                       .directory = directory,
                       .terminate = [](const auto&) { std::abort(); }});
  ViewState view;
  TestFlow flow(module, window.Boxes(), window, view, window);
  PortFlow ports(module, window, view);
  window.Attach(flow, view, module);
  window.show();
  (void)window.ShowFrameX(0);
  Milliseconds taken{0};
  for ([[maybe_unused]] auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    ports.SweepFurtherPorts();
    taken += std::chrono::steady_clock::now() - start;
  }
  state.counters["ms_a_port"] =
      taken.count() / (SweepPortCount * static_cast<double>(state.iterations()));
}
BENCHMARK(SweepInTheWindow)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kartocheck::bench

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
