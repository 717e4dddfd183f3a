#include "gui/support/desktops.h"

#include <QApplication>
#include <QStyle>

namespace kartocheck::test {

namespace {

QPalette DarkPalette() {
  const QColor window(45, 47, 51);
  const QColor text(232, 234, 237);
  const QColor faded(130, 134, 140);
  QPalette palette(QColor(58, 61, 66), window);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, QColor(30, 32, 35));
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::ToolTipBase, window);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Highlight, QColor(53, 132, 228));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faded);
  }
  return palette;
}

// Selected text is dark on a light ground that is hardly lighter.
QPalette PalePalette() {
  QPalette palette(QColor(240, 240, 240), QColor(250, 250, 250));
  palette.setColor(QPalette::Highlight, QColor(120, 120, 160));
  palette.setColor(QPalette::HighlightedText, QColor(40, 40, 40));
  return palette;
}

QPalette HighContrastPalette() {
  QPalette palette(Qt::black, Qt::black);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, Qt::white);
  }
  palette.setColor(QPalette::Base, Qt::black);
  palette.setColor(QPalette::Highlight, Qt::yellow);
  palette.setColor(QPalette::HighlightedText, Qt::black);
  return palette;
}

QPalette RawPaletteOf(Desktop desktop) {
  switch (desktop) {
    case Desktop::Light:
      return QApplication::style()->standardPalette();
    case Desktop::Dark:
      return DarkPalette();
    case Desktop::Pale:
      return PalePalette();
    case Desktop::HighContrast:
      return HighContrastPalette();
  }
  return {};
}

}  // namespace

std::string NameOf(Desktop desktop) {
  constexpr const char* Names[] = {"Light", "Dark", "Pale", "HighContrast"};
  return Names[static_cast<std::size_t>(desktop)];
}

// A palette that is set in the program does not pass through the style, but a desktop's does.
QPalette PaletteOf(Desktop desktop) {
  QPalette palette = RawPaletteOf(desktop);
  QApplication::style()->polish(palette);
  return palette;
}

}  // namespace kartocheck::test
