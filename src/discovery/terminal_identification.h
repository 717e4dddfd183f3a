#pragma once

#include <cstdint>

#include "discovery/terminal_info.h"
#include "terminal/ct_session.h"
#include "terminal/port_entry.h"

namespace kartocheck {

// Asks the terminal on the open link who it is, and fills the record of its slot and the port text
// of its port entry. Returns 0, or the CT-API code of the first status query when that exchange
// failed, or the result of ReadManufacturerData when that was not 0. The outcome is read from the
// record, not from the result. Neither opens nor closes the link.
std::int16_t IdentifyTerminal(CtSession& link, int pn, TerminalInfo& info, PortEntry& port);

// Reads the manufacturer data object (CT-BCS GET STATUS, tag 46): maker, product code and software
// version. Returns 0 when it was read, 1 when the answer is no such object of at least 15 bytes
// (nothing is written then), otherwise the CT-API code of the exchange.
std::int16_t ReadManufacturerData(CtSession& link, TerminalInfo& info);

// Empties the texts of the record. Flags stay.
void ResetTerminalInfo(TerminalInfo& info);

}  // namespace kartocheck
