// A card read by a terminal on a serial line, beside the time that the bytes of the dialogue need
// on the line. The line is a pseudo-terminal that is as slow as one; blocks carry up to 254 bytes.
// Bound: at most 1.15 times that time, at the lowest and at the highest rate (median of the runs).

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "host/pty_terminal.h"
#include "host/serial_device.h"
#include "host/serial_link.h"
#include "simulator/simulated_terminal.h"
#include "stopwatch.h"

namespace kartocheck::bench {
namespace {

using ctapi::Bytes;
using ctapi::Unit;
using ctapi::test::PtyTerminal;

constexpr double Bound = 1.15;
constexpr int Runs = 5;
constexpr double BitsPerByte = 11;  // start bit, 8 data bits, parity, stop bit

struct Command {
  Unit With;
  const char* Hex;
  std::size_t Answer;  // bytes
};

// Wakes the card, selects the insured data and reads them in pieces of two blocks and of one.
constexpr std::array Commands{
    Command{Unit::Terminal, "2013008100", 5}, Command{Unit::Terminal, "201201000101", 2},
    Command{Unit::Card, "00A4040C06D27600000102", 2}, Command{Unit::Card, "00B0810000", 258},
    Command{Unit::Card, "00B00100F0", 242}};

// Times of the line that one read takes.
double RatioOfRead(std::int32_t baud) {
  ctapi::SimulatedTerminal terminal(*ctapi::ProfileOf("gamma"));
  ctapi::EgkContents contents;
  contents.Vsd.EfPd = Bytes(600, 0x3C);
  terminal.Insert(ctapi::EgkCard(contents));
  const PtyTerminal pty(
      [&terminal](int unit, const Bytes& command) {
        return unit == 1 ? terminal.TransmitToTerminal(command) : terminal.TransmitToCard(command);
      },
      {.Baud = baud, .TakesLineTime = true});
  ctapi::host::OpenedLine line = ctapi::host::OpenSerialDevice(pty.Device());
  if (!line.Line) throw std::runtime_error("no line");
  const ctapi::host::OpenedLink opened = ctapi::host::SerialLink::Open(std::move(line.Line));
  if (!opened.Link || opened.Link->Baud() != baud) throw std::runtime_error("no terminal");
  const std::size_t before = pty.BytesOnTheLine();
  const double taken = MillisecondsOf([&] {
    for (const Command& command : Commands) {
      Bytes response;
      if (opened.Link->Exchange(command.With, *ctapi::BytesFromHex(command.Hex), response) != 0 ||
          response.size() != command.Answer) {
        throw std::runtime_error(command.Hex);
      }
    }
  });
  const auto bytes = static_cast<double>(pty.BytesOnTheLine() - before);
  return taken / (bytes * BitsPerByte * 1'000 / baud);
}

int Run() {
  bool isWithin = true;
  for (const std::int32_t baud : {9'600, 115'200}) {
    std::vector<double> ratios;
    ratios.reserve(Runs);
    for (int run = 0; run < Runs; ++run) ratios.push_back(RatioOfRead(baud));
    const double ratio = Median(ratios);
    std::printf("card read at %d baud: ratio %.3f (bound %.2f)\n", baud, ratio, Bound);
    isWithin = isWithin && ratio <= Bound;
  }
  return isWithin ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace kartocheck::bench

int main() {
  try {
    return kartocheck::bench::Run();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
