#include "support/simulated_ports.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "simulator/scenario.h"

namespace kartocheck::test {

namespace {

const std::filesystem::path Folder = BUNDLED_SCENARIOS;

}  // namespace

ctapi::SimulatedPort PortOf(const std::string& scenario, std::uint16_t pn) {
  ctapi::SimulatedPractice practice = ctapi::LoadScenario(Folder / (scenario + ".json"));
  const ctapi::SimulatedPort* port = practice.PortAt(pn);
  if (port == nullptr) throw std::invalid_argument("no such port in " + scenario);
  return *port;
}

std::vector<PortKind> AllPortKinds() {
  std::vector<PortKind> kinds;
  for (const auto& entry : std::filesystem::directory_iterator(Folder)) {
    if (entry.path().extension() != ".json") continue;
    const ctapi::SimulatedPractice practice = ctapi::LoadScenario(entry.path());
    for (const std::uint16_t pn : practice.AttachedPorts()) {
      const std::string scenario = entry.path().stem().string();
      kinds.push_back(
          {.name = scenario + " port " + std::to_string(pn), .port = PortOf(scenario, pn)});
    }
  }
  std::sort(kinds.begin(), kinds.end(),
            [](const PortKind& left, const PortKind& right) { return left.name < right.name; });
  return kinds;
}

}  // namespace kartocheck::test
