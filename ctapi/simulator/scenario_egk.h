#pragma once

#include "simulator/egk_card.h"
#include "simulator/kvk_record.h"
#include "simulator/scenario_reader.h"
#include "simulator/stored_egk_record.h"

namespace ctapi {

// The eGK that a scenario describes, and the record of one. extended: whether the terminal that
// stores it keeps extended records.
[[nodiscard]] EgkCard ReadEgkCard(const ScenarioValue& egk);
[[nodiscard]] StoredEgkRecord ReadEgkRecord(const ScenarioValue& egk, bool extended);

// "computed", "absent", "empty", or the byte itself in hexadecimal digits.
[[nodiscard]] CheckByte ReadCheck(const ScenarioValue& check);

}  // namespace ctapi
