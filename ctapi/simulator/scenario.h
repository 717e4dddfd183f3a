#pragma once

#include <filesystem>
#include <stdexcept>

#include "simulator/simulated_practice.h"

namespace ctapi {

// What is wrong with a scenario, in one line: the file, the place in it and the reason, as in
// "praxis.json: ports[2].terminal.family: unknown family 'x'".
struct ScenarioError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The practice that a scenario file describes (JSON; docs/scenarios.md tells its keys). Files named
// in it are relative to its own folder. Throws ScenarioError for a file that cannot be read, text
// that is no JSON, an unknown or missing key, a value of the wrong type or out of its range.
[[nodiscard]] SimulatedPractice LoadScenario(const std::filesystem::path& file);

}  // namespace ctapi
