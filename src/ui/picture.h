#pragma once

#include <QIcon>
#include <QPixmap>
#include <QStringView>

namespace kartocheck {

// A picture of the program by its file name without extension.
[[nodiscard]] QIcon PictureIcon(QStringView name);

// The same as a pixmap, fine enough for a screen of this scale factor; where none is named, for the
// finest screen there is.
[[nodiscard]] QPixmap PicturePixmap(QStringView name);
[[nodiscard]] QPixmap PicturePixmap(QStringView name, double screenScale);

}  // namespace kartocheck
