#pragma once

#include "discovery/terminal_info.h"
#include "terminal/ct_session.h"
#include "terminal/port_entry.h"

namespace kartocheck {

// How far asking a terminal who it is went.
enum class Identification {
  Finished,
  ExchangeFailed,      // without a status word
  NoManufacturerData,  // the answer is no manufacturer data object of at least 15 bytes
};

// Asks the terminal on the open link who it is, and fills the record of its slot and the port text
// of its port entry. What the terminal is, is read from the record: a terminal that is not known
// finishes, too. Neither opens nor closes the link.
Identification IdentifyTerminal(CtSession& link, Port port, TerminalInfo& info, PortEntry& entry);

// Reads the manufacturer data object (CT-BCS GET STATUS, tag 46): maker, product code and software
// version. Nothing is written unless it was read.
Identification ReadManufacturerData(CtSession& link, TerminalInfo& info);

// Empties the texts of the record. Flags stay.
void ResetTerminalInfo(TerminalInfo& info);

}  // namespace kartocheck
