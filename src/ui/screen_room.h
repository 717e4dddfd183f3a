#pragma once

#include <QSize>

class QWidget;

namespace kartocheck {

// How large the inside of a window can be where the window is to be seen whole: the screen without
// its task bar, and the window without its title bar and frame.
[[nodiscard]] QSize RoomOnScreen(const QWidget& window);

// Makes the window as large as it wants to be, or as large as its screen allows. Of itself, a
// window opens no larger than two thirds of the screen.
void FitToScreen(QWidget& window);

}  // namespace kartocheck
