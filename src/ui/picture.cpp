#include "ui/picture.h"

namespace kartocheck {

namespace {

QString FileOf(QStringView name) {
  return u":/pictures/" + name.toString() + u".png";
}

}  // namespace

QIcon PictureIcon(QStringView name) {
  return QIcon(FileOf(name));
}

QPixmap PicturePixmap(QStringView name) {
  return QPixmap(FileOf(name));
}

}  // namespace kartocheck
