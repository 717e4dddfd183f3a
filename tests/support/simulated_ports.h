#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/simulated_practice.h"

namespace kartocheck::test {

// What a bundled scenario has on one of its ports.
[[nodiscard]] ctapi::SimulatedPort PortOf(const std::string& scenario, std::uint16_t pn = 1);

// One of the things that can stand on a port.
struct PortKind {
  std::string name;  // scenario and port
  ctapi::SimulatedPort port;
};

// Everything that the bundled scenarios have on a port: terminals of every family with every kind
// of card and record, in every state, and ports without one.
[[nodiscard]] std::vector<PortKind> AllPortKinds();

}  // namespace kartocheck::test
