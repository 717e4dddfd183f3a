#pragma once

#include "simulator/scenario_reader.h"
#include "simulator/simulated_terminal.h"

namespace ctapi {

// The card that a scenario describes, or the stored record of a mobile terminal; extended: whether
// that terminal keeps extended records.
[[nodiscard]] CardImage ReadCard(const ScenarioValue& card);
[[nodiscard]] CardImage ReadRecord(const ScenarioValue& record, bool extended);

}  // namespace ctapi
