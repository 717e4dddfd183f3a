#pragma once

#include <deque>
#include <sstream>
#include <string>

#include "console/console_run.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "support/fake_event_loop.h"
#include "support/link_fixture.h"
#include "support/open_module.h"
#include "support/simulated_ports.h"

namespace kartocheck::test {

// The console over a simulated practice.
class Console {
 public:
  explicit Console(StoredRecords storedRecords = StoredRecords::Keep,
                   StatusLine statusLine = StatusLine::Kept)
      : frontEnd(messages, {.statusLine = statusLine}, storedRecords), module(Surroundings()) {}

  // On a machine that knows this of its ports.
  explicit Console(const PortDirectory& machine)
      : directory(&machine), frontEnd(messages, {}, StoredRecords::Keep), module(Surroundings()) {}

  // With a person who types these lines.
  explicit Console(std::deque<std::string> lines)
      : typed(std::move(lines)),
        frontEnd(messages, {}, [this] { return NextLine(); }),
        module(Surroundings()) {}

  [[nodiscard]] int Run(const ConsoleOptions& options = {}) {
    return RunConsole(options, module, frontEnd, out);
  }
  [[nodiscard]] int Diagnose(int pn) {
    return RunConsoleDiagnosis(Port(pn), module, frontEnd, out);
  }

  ctapi::SimulatedPractice practice;
  CtApiSimulated api{practice};
  SerialPortSimulated serial{practice};
  PortDirectorySimulated simulatedPorts{practice};
  const PortDirectory* directory = &simulatedPorts;
  FakeEventLoop eventLoop;
  std::ostringstream out;
  std::ostringstream messages;
  std::deque<std::string> typed;
  ConsoleFrontEnd frontEnd;
  OpenModule module;

 private:
  [[nodiscard]] Bas_MKT_Test::Surroundings Surroundings() {
    return {.api = api,
            .dialogs = frontEnd,
            .display = frontEnd,
            .eventLoop = eventLoop,
            .serial = serial,
            .directory = *directory,
            .terminate = [](const auto&) { throw Terminated{}; }};
  }

  std::optional<std::string> NextLine() {
    if (typed.empty()) return std::nullopt;
    std::string line = typed.front();
    typed.pop_front();
    return line;
  }
};

}  // namespace kartocheck::test
