#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "host/pty_terminal.h"
#include "simulator/scenario.h"

// The whole program with this library, and a terminal with an eGK on a pseudo-terminal.
namespace ctapi::host {
namespace {

using ctapi::test::PtyTerminal;

TEST(SerialProgram, FindsTheTerminalAndReadsTheEgk) {
  SimulatedPractice practice = LoadScenario(BUNDLED_SCENARIOS "/praxis.json");
  SimulatedTerminal& terminal = *practice.TerminalAt(1);
  const PtyTerminal pty(
      [&](int unit, const Bytes& command) {
        return unit == 1 ? terminal.TransmitToTerminal(command) : terminal.TransmitToCard(command);
      },
      {.Baud = 38400});
  const std::string call = std::string(KARTOCHECK_PROGRAM) +
                           " --console --json --port 3 --serial-port 3=" + pty.Device() +
                           " 2>/dev/null";
  FILE* const program = ::popen(call.c_str(), "r");
  ASSERT_NE(program, nullptr);
  std::string report;
  for (int c = std::fgetc(program); c != EOF; c = std::fgetc(program)) {
    report += static_cast<char>(c);
  }
  EXPECT_EQ(::pclose(program), 0) << report;
  for (const char* const part : {"\"baud\": \"38400\"", "\"answered\": true",
                                 "\"iccsn\": \"8027600", "\"card\": \"egk\"", "\"lastName\": \""}) {
    EXPECT_NE(report.find(part), std::string::npos) << part << '\n' << report;
  }
}

}  // namespace
}  // namespace ctapi::host
