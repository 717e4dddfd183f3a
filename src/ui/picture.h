#pragma once

#include <QIcon>
#include <QPixmap>
#include <QStringView>

namespace kartocheck {

// A picture of the program by its file name without extension, at the screen's scale factor.
[[nodiscard]] QIcon PictureIcon(QStringView name);
[[nodiscard]] QPixmap PicturePixmap(QStringView name);

}  // namespace kartocheck
