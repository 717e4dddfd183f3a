#pragma once

#include "host/pcscd_service.h"
#include "simulator/simulated_terminal.h"

namespace ctapi::test {

// The card of a simulated terminal, for the virtual reader. The terminal has to outlive it.
[[nodiscard]] VirtualCard::Behaviour CardOf(SimulatedTerminal& terminal);

}  // namespace ctapi::test
