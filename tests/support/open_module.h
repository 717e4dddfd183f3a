#pragma once

#include "app/bas_mkt_test.h"

namespace kartocheck::test {

// The program's state with its records open: a test lays out what earlier runs would have left.
class OpenModule final : public Bas_MKT_Test {
 public:
  using Bas_MKT_Test::Bas_MKT_Test;

  PerSlot<PortEntry>& Ports = ports_;
  PerSlot<TerminalInfo>& Terminals = terminals_;
  PerSlot<InsuredData>& Insured = insured_;
  PerSlot<EgkData>& Egk = egk_;
  std::optional<Port>& SelectedPort = selectedPort_;
  int& CurrentSlot = currentSlot_;
  std::vector<Port>& FurtherPorts = furtherPorts_;
  std::optional<Port>& FurtherPort = furtherPort_;
  bool& Busy = busy_;
  bool& ExitRequested = exitRequested_;
  ValidationSettings& Validation = validation_;
};

}  // namespace kartocheck::test
