#include "ui/fixed_pitch_font.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

namespace kartocheck {

bool IsFixedPitch(const QFont& font) {
  const QFontMetricsF metrics(font);
  const auto length = [&metrics](char16_t character) {
    return metrics.horizontalAdvance(QString(4, character));
  };
  for (char16_t character = u'!'; character <= u'~'; ++character) {
    if (!qFuzzyCompare(length(character), length(u' '))) return false;
  }
  return true;
}

// A desktop may put a proportional face in the place of a family that it does not have.
QFont FixedPitchFont(QFont font) {
  const QString preferred = QStringLiteral("Courier New");
  const auto suits = [&font](const QString& family) {
    font.setFamilies({family});
    return IsFixedPitch(font);
  };
  font.setStyleHint(QFont::Monospace);
  font.setFixedPitch(true);
  if (suits(preferred)) return font;
  if (suits(QFontDatabase::systemFont(QFontDatabase::FixedFont).family())) return font;
  for (const QString& family : QFontDatabase::families(QFontDatabase::Latin)) {
    if (QFontDatabase::isFixedPitch(family) && suits(family)) return font;
  }
  font.setFamilies({preferred});
  return font;
}

}  // namespace kartocheck
