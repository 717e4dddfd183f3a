// The sweep over all port numbers with the built library, one PC/SC reader attached and no serial
// device: open and close of 256 COM and 256 USB numbers. Bound: at most 100 ms, with the table of
// COM numbers in the environment and without it (median of the runs).

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <sys/mount.h>

#include "host/pcscd_service.h"
#include "protocol/com_table.h"
#include "stopwatch.h"
#include "support/loaded_library.h"

namespace kartocheck::bench {
namespace {

namespace fs = std::filesystem;
using ctapi::test::PcscdService;

constexpr double Bound = 100;  // milliseconds
constexpr int Runs = 21;
constexpr int FirstReader = 8192;
constexpr int PortsOfAKind = 256;
constexpr const char* Terminals = "/sys/class/tty";

void Expect(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

// Takes the machine's serial devices away from this process. What has no hardware behind it stays,
// since the library has to look at it.
void HideSerialDevices() {
  std::vector<fs::path> virtualOnes;
  for (const fs::directory_entry& entry : fs::directory_iterator(Terminals)) {
    const fs::path device = fs::canonical(entry.path());
    if (device.string().starts_with("/sys/devices/virtual/")) virtualOnes.push_back(device);
  }
  Expect(::mount("none", Terminals, "tmpfs", 0, nullptr) == 0, "the serial devices stay");
  for (const fs::path& device : virtualOnes) {
    fs::create_directory_symlink(device, Terminals / device.filename());
  }
}

// Returns the milliseconds of one sweep, which has to find the reader and nothing else. The driver
// shows it as two, for its two slots.
double Sweep(CtApiLibrary& library) {
  int found = 0;
  const double taken = MillisecondsOf([&] {
    for (const int first : {1, FirstReader}) {
      for (int pn = first; pn < first + PortsOfAKind; ++pn) {
        const bool isOpen = library.Init(1, static_cast<std::uint16_t>(pn)) == 0;
        if (!isOpen) continue;
        (void)library.Close(1);
        Expect(pn == FirstReader || pn == FirstReader + 1, "a port that should not be there");
        ++found;
      }
    }
  });
  Expect(found >= 1, "no reader");
  return taken;
}

bool IsWithin(CtApiLibrary& library, const char* what) {
  std::vector<double> times;
  times.reserve(Runs);
  for (int run = 0; run < Runs; ++run) times.push_back(Sweep(library));
  const double taken = Median(times);
  std::printf("sweep over 512 ports %s: %.1f ms, ratio %.2f of the bound of %.0f ms\n", what, taken,
              taken / Bound, Bound);
  return taken <= Bound;
}

int Run() {
  std::string reason = "no network namespace";
  std::unique_ptr<PcscdService> service;
  if (ctapi::test::EnterOwnNetwork()) service = PcscdService::Start(reason);
  if (!service) throw std::runtime_error(reason);
  HideSerialDevices();
  ::setenv(ctapi::ComTableVariable, "", 1);
  // The environment is that of the library's process, from its start on.
  const QStringList file{QStringLiteral(HOST_LIBRARY)};
  CtApiLibrary told = test::LoadedLibrary(file);
  Expect(ctapi::test::Eventually([&] { return told.Init(1, FirstReader) == 0; }), "no reader");
  (void)told.Close(1);
  const bool isWithinGiven = IsWithin(told, "with the table given");
  ::unsetenv(ctapi::ComTableVariable);
  CtApiLibrary untold = test::LoadedLibrary(file);
  const bool isWithinFound = IsWithin(untold, "without a table");
  return isWithinGiven && isWithinFound ? EXIT_SUCCESS : EXIT_FAILURE;
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
