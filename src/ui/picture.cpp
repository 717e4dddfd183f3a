#include "ui/picture.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace kartocheck {

namespace {

constexpr int FinestScale = 3;

QString FileOf(QStringView name, int scale = 1) {
  const QString suffix = scale > 1 ? u'@' + QString::number(scale) + u'x' : QString();
  return u":/pictures/" + name.toString() + suffix + u".png";
}

}  // namespace

QIcon PictureIcon(QStringView name) {
  return QIcon(FileOf(name));
}

QPixmap PicturePixmap(QStringView name) {
  return PicturePixmap(name, qApp->devicePixelRatio());
}

// Unlike an icon, a pixmap does not look for the files of the other scale factors by itself.
QPixmap PicturePixmap(QStringView name, double screenScale) {
  return QPixmap(
      FileOf(name, std::clamp(static_cast<int>(std::ceil(screenScale)), 1, FinestScale)));
}

}  // namespace kartocheck
