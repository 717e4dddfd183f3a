#pragma once

#include <QFont>

namespace kartocheck {

// Whether lines of equally many printable ASCII characters are equally long. Measured, since a face
// can be fixed-pitch without saying so of itself, and one that says so can join letters.
[[nodiscard]] bool IsFixedPitch(const QFont& font);

// The font in a fixed-pitch family: "Courier New" or what the desktop has in its place, otherwise
// the desktop's own choice, otherwise any. "Courier New" where the machine has no such family.
[[nodiscard]] QFont FixedPitchFont(QFont font);

}  // namespace kartocheck
