// Reading an eGK in a PC/SC reader with the program's console, as a whole process from its start to
// its end, beside what other programs for the same card take, which read a part of what the console
// reads: egk-tool of the package opensc and kvkcard of libchipcard-tools. The card is a simulated
// one in the virtual reader of the system's own service. Bound: no slower than either (medians of
// interleaved runs). Partners that are not installed are left out.
//
// With arguments: runs that command instead, with the card in the reader.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "go_first.h"
#include "host/pcscd_service.h"
#include "host/virtual_egk.h"
#include "simulator/scenario.h"
#include "stopwatch.h"

namespace kartocheck::bench {
namespace {

using ctapi::test::Eventually;
using ctapi::test::PcscdService;
using ctapi::test::VirtualCard;

constexpr double Bound = 1.0;
constexpr int Rounds = 101;

struct Call {
  const char* name;
  std::vector<std::string> arguments;
  std::vector<double> times{};  // milliseconds
};

// egk-tool knows the makers of cards by their ATR, and this card has none of theirs. Its default
// driver selects a file by its path, which an eGK does not know, and wants to be told of the file.
constexpr const char* OpenscConfiguration = BENCH_FOLDER "/opensc.conf";

VirtualCard::Behaviour KnowingPaths(VirtualCard::Behaviour card) {
  card.Transmit = [transmit = card.Transmit](const VirtualCard::Bytes& command) {
    constexpr std::array<std::uint8_t, 5> SelectByPath{0x00, 0xA4, 0x08, 0x00, 0x02};
    const bool isByPath = command.size() > SelectByPath.size() + 1 &&
                          std::equal(SelectByPath.begin(), SelectByPath.end(), command.begin());
    if (!isByPath) return transmit(command);
    auto answer = transmit({0x00, 0xA4, 0x02, 0x0C, 0x02, command[5], command[6]});
    // File control parameters (ISO 7816-4): the size of EF.PD, 850 bytes.
    constexpr std::array<std::uint8_t, 6> Parameters{0x62, 0x04, 0x80, 0x02, 0x03, 0x52};
    if (answer) answer->insert(answer->begin(), Parameters.begin(), Parameters.end());
    return answer;
  };
  return card;
}

enum class Output { Shown, Dropped };

// Runs the command to its end; its exit status, -1 where it cannot be started.
int RunToItsEnd(const std::vector<std::string>& command, Output output) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  if (output == Output::Dropped) {
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  pid_t process = 0;
  const int error =
      ::posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (error != 0 || ::waitpid(process, &status, 0) != process) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<Call> InstalledCalls() {
  const std::vector<Call> all{
      {"kartocheck", {KARTOCHECK_PROGRAM, "--console", "--port", "8192"}},
      {"egk-tool", {"egk-tool", "--pd"}},
      {"kvkcard", {"kvkcard", "read"}},
  };
  std::vector<Call> installed;
  for (const Call& call : all) {
    const int status = RunToItsEnd(call.arguments, Output::Dropped);
    if (status == 0) {
      installed.push_back(call);
    } else {
      std::printf("%s left out: status %d\n", call.name, status);
    }
  }
  return installed;
}

int Compare() {
  std::vector<Call> calls = InstalledCalls();
  if (calls.empty() || calls.front().arguments[0] != KARTOCHECK_PROGRAM) return EXIT_FAILURE;
  for (int round = 0; round < Rounds; ++round) {
    for (Call& call : calls) {
      call.times.push_back(
          MillisecondsOf([&] { (void)RunToItsEnd(call.arguments, Output::Dropped); }));
    }
  }
  bool isWithin = true;
  const double own = Median(calls.front().times);
  for (const Call& call : calls) {
    const double ratio = own / Median(call.times);
    isWithin = isWithin && ratio <= Bound;
    std::printf("%-12s %6.1f ms, ratio %.2f (bound %.2f)\n", call.name, Median(call.times), ratio,
                Bound);
  }
  return isWithin ? EXIT_SUCCESS : EXIT_FAILURE;
}

int Run(const std::vector<std::string>& command) {
  if (!GoFirst()) std::puts("no right to go before others: the machine has to be idle");
  (void)::setenv("OPENSC_CONF", OpenscConfiguration, 1);
  std::string reason = "no network namespace";
  std::unique_ptr<PcscdService> service;
  if (ctapi::test::EnterOwnNetwork()) service = PcscdService::Start(reason);
  if (!service) throw std::runtime_error(reason);
  ctapi::SimulatedPractice practice = ctapi::LoadScenario(SCENARIOS "/praxis.json");
  const VirtualCard card(KnowingPaths(ctapi::test::CardOf(*practice.TerminalAt(1))));
  const auto isRead = [] {
    return RunToItsEnd({KARTOCHECK_PROGRAM, "--console", "--port", "8192"}, Output::Dropped) == 0;
  };
  if (!card.IsIn() || !Eventually(isRead)) throw std::runtime_error("no card in the reader");
  return command.empty() ? Compare() : RunToItsEnd(command, Output::Shown);
}

}  // namespace
}  // namespace kartocheck::bench

int main(int argc, char** argv) {
  try {
    return kartocheck::bench::Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
  }
}
