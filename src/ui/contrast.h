#pragma once

#include <QColor>

namespace kartocheck {

// The least contrast that WCAG 2.1 asks for: of texts (1.4.3), and of what shows where a control is
// (1.4.11).
inline constexpr double TextContrast = 4.5;
inline constexpr double OutlineContrast = 3.0;

// The contrast of two colours as WCAG 2.1 defines it, 1 to 21.
[[nodiscard]] double ContrastOf(const QColor& one, const QColor& other);

// The colour, moved towards `target` as far as its contrast with `against` asks for.
[[nodiscard]] QColor MovedToContrast(const QColor& colour, const QColor& target,
                                     const QColor& against, double contrast);

}  // namespace kartocheck
