#include "ui/screen_room.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace kartocheck {

namespace {

// Both edges of a window's frame, and its title bar with the lower edge, in logical pixels. What
// they are is known only once the window is seen; no usual desktop has larger ones.
constexpr QSize FrameSize(8, 40);

}  // namespace

QSize RoomOnScreen(const QWidget& window) {
  // Before it is seen, a window knows no screen of its own.
  const QWidget* opener = window.isVisible() ? nullptr : window.parentWidget();
  const QScreen* screen = (opener == nullptr ? window : *opener).screen();
  return screen->availableSize() - FrameSize;
}

void FitToScreen(QWidget& window) {
  const QSize room = RoomOnScreen(window);
  QSize wanted = window.sizeHint();
  // What is too high scrolls, and the scroll bar takes its room from the content's width.
  if (wanted.height() > room.height()) {
    wanted.rwidth() += window.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  }
  window.resize(wanted.boundedTo(room));
}

}  // namespace kartocheck
