#pragma once

#include <QPalette>

#include <string>

namespace kartocheck::test {

// The colours of a desktop.
enum class Desktop { Light, Dark, Pale, HighContrast };
inline constexpr Desktop Desktops[] = {Desktop::Light, Desktop::Dark, Desktop::Pale,
                                       Desktop::HighContrast};

[[nodiscard]] std::string NameOf(Desktop desktop);

// The palette that programs get on this desktop, as the application's style passes it on.
[[nodiscard]] QPalette PaletteOf(Desktop desktop);

}  // namespace kartocheck::test
