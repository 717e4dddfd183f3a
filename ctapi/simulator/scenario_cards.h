#pragma once

#include "simulator/scenario_reader.h"
#include "simulator/simulated_terminal.h"

namespace ctapi {

// The card, or the stored record of a mobile terminal, that a scenario describes.
[[nodiscard]] CardImage ReadCard(const ScenarioValue& card);
[[nodiscard]] CardImage ReadRecord(const ScenarioValue& record);

}  // namespace ctapi
