#pragma once

#include <QString>

#include "platform/standard_streams.h"

namespace kartocheck {

// Tells a text while there is no window: on the stream, Output or Error, with a line end. Where the
// program was started without it, as a program with a window is on some systems, in the way that
// its user sees.
void TellPlainly(StandardStream stream, const QString& text);

}  // namespace kartocheck
