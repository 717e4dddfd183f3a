#pragma once

#include "terminal/ct_session.h"

namespace kartocheck {

// The end of every read: sends RESET CT, so that the terminal lets go of the card, and closes the
// link.
void ResetAndClose(CtSession& link);

}  // namespace kartocheck
