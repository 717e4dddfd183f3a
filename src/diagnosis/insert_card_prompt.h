#pragma once

#include <QString>

#include "platform/dialogs.h"
#include "platform/port.h"

namespace kartocheck {

// The question for a card. A mobile terminal's names the modes in which it hands out stored
// records, and that the record is erased.

// As button 0 and button 3 ask it: the port at the end, Cancel preselected.
[[nodiscard]] Question InsertCardPrompt(Port port, bool mobile);

// As the check of one port asks it: the bare port number and ") " at the end; Cancel preselected
// for a mobile terminal, OK for a fixed one.
[[nodiscard]] Question InsertCardPromptOfDiagnosis(Port port, bool mobile);

}  // namespace kartocheck
