#include "host/virtual_egk.h"

#include "simulator/bytes.h"

namespace ctapi::test {

namespace {

constexpr std::size_t StatusWordLength = 2;

}  // namespace

VirtualCard::Behaviour CardOf(SimulatedTerminal& terminal) {
  const Bytes resetIccWithAtr = *BytesFromHex("20110101");
  const Bytes resetIcc = *BytesFromHex("20110100");
  Bytes atr = terminal.TransmitToTerminal(resetIccWithAtr);
  atr.resize(atr.size() - StatusWordLength);
  return {.Atr = atr,
          .Reset = [&terminal, resetIcc] { (void)terminal.TransmitToTerminal(resetIcc); },
          .Transmit = [&terminal](const Bytes& command) -> std::optional<Bytes> {
            return terminal.TransmitToCard(command);
          }};
}

}  // namespace ctapi::test
