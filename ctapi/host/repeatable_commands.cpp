#include "host/repeatable_commands.h"

#include <algorithm>
#include <array>

#include "protocol/ct_bcs.h"
#include "protocol/iso7816.h"

namespace ctapi::host {

bool MayBeRepeated(Unit unit, ByteView command) {
  constexpr std::array<std::uint8_t, 2> TerminalInstructions{ct_bcs::InsGetStatus,
                                                             ct_bcs::InsConnectionQuery};
  constexpr std::array<std::uint8_t, 3> CardInstructions{iso7816::InsSelect, iso7816::InsReadBinary,
                                                         iso7816::InsReadRecord};
  if (command.size() < 2) return false;
  const auto isAmong = [&command](const auto& known) {
    return std::find(known.begin(), known.end(), command[1]) != known.end();
  };
  return unit == Unit::Terminal ? isAmong(TerminalInstructions) : isAmong(CardInstructions);
}

}  // namespace ctapi::host
