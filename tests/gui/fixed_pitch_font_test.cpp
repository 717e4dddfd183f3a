#include "ui/fixed_pitch_font.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

// Whether slim, wide and joinable characters take the same room.
bool IsEven(const QFont& font) {
  const QFontMetricsF metrics(font);
  const double width = metrics.horizontalAdvance(QStringLiteral("WWWWWWWWWWWW"));
  return metrics.horizontalAdvance(QStringLiteral("iiiiiiiiiiii")) == width &&
         metrics.horizontalAdvance(QStringLiteral("000000000000")) == width &&
         metrics.horizontalAdvance(QStringLiteral("            ")) == width &&
         metrics.horizontalAdvance(QStringLiteral("Schifffahrt,")) == width;
}

QFont InFamily(const QString& family) {
  QFont font = QApplication::font();
  font.setFamilies({family});
  return font;
}

bool MachineHasAnEvenFamily() {
  const QStringList families = QFontDatabase::families();
  return std::any_of(families.begin(), families.end(),
                     [](const QString& family) { return IsEven(InFamily(family)); });
}

TEST(FixedPitchFontTest, EveryCharacterIsEquallyWideWhereTheMachineHasSuchAFamily) {
  const QFont font = FixedPitchFont(QApplication::font());
  const bool possible = MachineHasAnEvenFamily();
  EXPECT_EQ(IsEven(font), possible) << QFontInfo(font).family().toStdString();
  EXPECT_EQ(IsFixedPitch(font), possible) << QFontInfo(font).family().toStdString();
}

TEST(FixedPitchFontTest, IsToldFromAProportionalOne) {
  for (const QString& family : QFontDatabase::families(QFontDatabase::Latin)) {
    const QFont font = InFamily(family);
    EXPECT_TRUE(IsEven(font) || !IsFixedPitch(font)) << family.toStdString();
  }
}

TEST(FixedPitchFontTest, CourierNewComesFirstAndTheDesktopsChoiceNext) {
  const QString courier = QStringLiteral("Courier New");
  const QString desktops = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
  const QString family = FixedPitchFont(QApplication::font()).families().value(0);
  if (IsEven(InFamily(courier)) || !MachineHasAnEvenFamily()) {
    EXPECT_EQ(family, courier);
  } else if (IsEven(InFamily(desktops))) {
    EXPECT_EQ(family, desktops);
  } else {
    EXPECT_NE(family, courier);
    EXPECT_NE(family, desktops);
  }
}

TEST(FixedPitchFontTest, SizeAndWeightStay) {
  QFont font = QApplication::font();
  font.setPointSizeF(17.5);
  font.setBold(true);
  const QFont fixed = FixedPitchFont(font);
  EXPECT_EQ(fixed.pointSizeF(), 17.5);
  EXPECT_TRUE(fixed.bold());
}

}  // namespace
}  // namespace kartocheck::test
