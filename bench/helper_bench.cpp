// A call to the CT-API library through the helper process, beside the call itself in this process,
// and the time from a first call to its answer, beside a call to a helper that runs. Bounds: 60
// microseconds more for a call, 3 milliseconds for the start.

#include <QString>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "helper/library.h"
#include "stopwatch.h"
#include "support/loaded_library.h"

namespace kartocheck::bench {
namespace {

namespace helper = ctapi::helper;

constexpr double CallBound = 60;     // microseconds
constexpr double StartBound = 3000;  // microseconds
constexpr int Starts = 51;

constexpr std::array<std::uint8_t, 5> Command{0x00, 0xB0, 0x00, 0x00, 0x00};
constexpr std::uint16_t BufferSize = 4098;

const QStringList EchoLibrary{QStringLiteral(ECHO_LIBRARY)};

void Call(CtApi& api) {
  std::array<std::uint8_t, BufferSize> buffer{};
  std::uint8_t dad = 0;
  std::uint8_t sad = 2;
  std::uint16_t length = 0;
  if (api.Data(1, dad, sad, Command, buffer, length) != 0) std::abort();
}

double MicrosecondsOfBareCall() {
  helper::Library library(helper::SharedLibrary(ECHO_LIBRARY));
  return MicrosecondsOf([&] {
    const helper::Message answer =
        library.Answer({.Kind = helper::MessageKind::Data,
                        .Sad = 2,
                        .Length = BufferSize,
                        .Payload = ctapi::Bytes(Command.begin(), Command.end())});
    if (answer.Code != 0) std::abort();
  });
}

double MicrosecondsOfStart() {
  std::vector<double> times;
  for (int start = 0; start < Starts; ++start) {
    CtApiLibrary library = test::LoadedLibrary(EchoLibrary);
    const auto before = std::chrono::steady_clock::now();
    (void)library.Close(1);
    const std::chrono::duration<double, std::micro> taken =
        std::chrono::steady_clock::now() - before;
    times.push_back(taken.count());
  }
  std::nth_element(times.begin(), times.begin() + Starts / 2, times.end());
  return times[Starts / 2];
}

bool Print(const char* what, double taken, double bound) {
  std::printf("%s: %.1f us, ratio %.2f of the bound\n", what, taken, taken / bound);
  return taken <= bound;
}

}  // namespace
}  // namespace kartocheck::bench

int main() {
  using namespace kartocheck::bench;
  kartocheck::CtApiLibrary library = kartocheck::test::LoadedLibrary(EchoLibrary);
  const double bare = MicrosecondsOfBareCall();
  const double through = MicrosecondsOf([&] { Call(library); });
  const bool isQuick = Print("a call more than the call itself", through - bare, CallBound);
  const bool startsQuickly = Print("the helper's start", MicrosecondsOfStart(), StartBound);
  return isQuick && startsQuickly ? EXIT_SUCCESS : EXIT_FAILURE;
}
