#include "ui/contrast.h"

#include <algorithm>
#include <cmath>

namespace kartocheck {

namespace {

constexpr int Steps = 40;

// A channel of an sRGB colour, 0 to 1, as light.
double Light(double channel) {
  return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Light(colour.redF()) + 0.7152 * Light(colour.greenF()) +
         0.0722 * Light(colour.blueF());
}

QColor Between(const QColor& from, const QColor& to, double part) {
  const auto mixed = [part](int one, int other) {
    return static_cast<int>(std::lround(one + (other - one) * part));
  };
  return {mixed(from.red(), to.red()), mixed(from.green(), to.green()),
          mixed(from.blue(), to.blue())};
}

}  // namespace

double ContrastOf(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor MovedToContrast(const QColor& colour, const QColor& target, const QColor& against,
                       double contrast) {
  for (int step = 0; step < Steps; ++step) {
    const QColor moved = Between(colour, target, static_cast<double>(step) / Steps);
    if (ContrastOf(moved, against) >= contrast) return moved;
  }
  return target;
}

}  // namespace kartocheck
