#include "gui/support/layout_checks.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>

#include <gtest/gtest.h>
#include <vector>

namespace kartocheck::test {

namespace {

// The frame that a desktop puts around a window, in logical pixels: both edges, and the title bar.
constexpr QSize Frame(8, 40);
// On a narrower screen a font of 144 dpi may make everything in the main window scroll.
constexpr int LeastWidthForLargeFonts = 1280;

std::string NameOf(const QWidget& widget) {
  std::string name = widget.metaObject()->className();
  name += ' ' + widget.objectName().toStdString();
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    name += " \"" + label->text().left(60).toStdString() + '"';
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    name += " \"" + button->text().toStdString() + '"';
  }
  return name;
}

// The scrolled part that the widget lies in, or nothing.
const QAbstractScrollArea* ScrolledPartOf(const QWidget& widget) {
  for (const QWidget* holder = widget.parentWidget(); holder != nullptr;
       holder = holder->parentWidget()) {
    if (const auto* area = qobject_cast<const QAbstractScrollArea*>(holder)) return area;
  }
  return nullptr;
}

bool Scrolls(const QAbstractScrollArea& area) {
  return area.horizontalScrollBar()->maximum() > 0 || area.verticalScrollBar()->maximum() > 0;
}

// Whether the widget may be out of view because something around it scrolls.
bool IsScrolled(const QWidget& widget) {
  const QAbstractScrollArea* area = ScrolledPartOf(widget);
  return area != nullptr && (Scrolls(*area) || IsScrolled(*area));
}

QRect PlaceOf(const QWidget& widget) {
  return {widget.mapTo(widget.window(), QPoint(0, 0)), widget.size()};
}

// What the user reads or presses. The number and the key of a result line lie over the gaps of its
// text on purpose, and tabs that do not fit are scrolled by buttons of Qt's own.
std::vector<const QWidget*> ControlsOf(const QWidget& window) {
  std::vector<const QWidget*> controls;
  for (const auto* widget : window.findChildren<QWidget*>()) {
    const bool isControl = qobject_cast<const QLabel*>(widget) != nullptr ||
                           qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                           qobject_cast<const QLineEdit*>(widget) != nullptr ||
                           qobject_cast<const QAbstractScrollArea*>(widget) != nullptr ||
                           qobject_cast<const QTabBar*>(widget) != nullptr ||
                           qobject_cast<const QProgressBar*>(widget) != nullptr;
    const bool isLaidOver = widget->objectName().startsWith(u"Labe_DatenInfo2") ||
                            widget->objectName().startsWith(u"Imag_DatenInfo1");
    const bool isQts =
        qobject_cast<const QAbstractScrollArea*>(widget->parentWidget()) != nullptr ||
        qobject_cast<const QTabBar*>(widget->parentWidget()) != nullptr ||
        widget->objectName().startsWith(u"qt_menubar_ext");
    if (isControl && widget->isVisible() && widget->window() == &window && !isLaidOver && !isQts) {
      controls.push_back(widget);
    }
  }
  return controls;
}

// The room that a control needs to be whole.
QSize RoomOf(const QWidget& control) {
  const auto* label = qobject_cast<const QLabel*>(&control);
  if (label != nullptr && label->wordWrap()) {
    return {label->minimumSizeHint().width(), label->heightForWidth(label->width())};
  }
  if (label != nullptr || qobject_cast<const QPushButton*>(&control) != nullptr) {
    return control.sizeHint();
  }
  // A size that the window has set counts instead of what the control would ask for.
  const auto least = [](int set, int asked) { return set > 0 ? set : asked; };
  return {least(control.minimumWidth(), control.minimumSizeHint().width()),
          least(control.minimumHeight(), control.minimumSizeHint().height())};
}

}  // namespace

void ExpectFitsOnScreen(const QWidget& window) {
  const QSize room = window.screen()->availableSize() - Frame;
  EXPECT_LE(window.width(), room.width()) << NameOf(window);
  EXPECT_LE(window.height(), room.height()) << NameOf(window);
  EXPECT_LE(window.minimumSizeHint().width(), room.width()) << NameOf(window);
  EXPECT_LE(window.minimumSizeHint().height(), room.height()) << NameOf(window);
}

void ExpectNothingCut(const QWidget& window) {
  for (const QWidget* control : ControlsOf(window)) {
    const QSize room = RoomOf(*control);
    EXPECT_GE(control->width(), room.width()) << NameOf(*control);
    EXPECT_GE(control->height(), room.height()) << NameOf(*control);
    const QWidget& holder = *control->parentWidget();
    const bool isScrolled = qobject_cast<const QAbstractScrollArea*>(holder.parentWidget());
    EXPECT_TRUE(isScrolled || holder.rect().contains(control->geometry()))
        << NameOf(*control) << " reaches out of " << NameOf(holder);
  }
}

void ExpectNothingOverlaps(const QWidget& window) {
  const std::vector<const QWidget*> controls = ControlsOf(window);
  for (std::size_t one = 0; one < controls.size(); ++one) {
    for (std::size_t other = one + 1; other < controls.size(); ++other) {
      const QWidget& first = *controls[one];
      const QWidget& second = *controls[other];
      const bool areApart = ScrolledPartOf(first) == ScrolledPartOf(second);
      if (!areApart || first.isAncestorOf(&second) || second.isAncestorOf(&first)) continue;
      EXPECT_FALSE(PlaceOf(first).intersects(PlaceOf(second)))
          << NameOf(first) << " and " << NameOf(second);
    }
  }
}

void ExpectOnlyPartsScroll(const QMainWindow& window) {
  const bool isLargeFont = window.logicalDpiX() > 96;
  if (isLargeFont && window.screen()->availableSize().width() < LeastWidthForLargeFonts) return;
  EXPECT_FALSE(Scrolls(*qobject_cast<const QAbstractScrollArea*>(window.centralWidget())));
}

void ExpectButtonsInView(const QWidget& window) {
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    if (!button->isVisible() || IsScrolled(*button)) continue;
    if (qobject_cast<const QTabBar*>(button->parentWidget()) != nullptr) continue;
    EXPECT_TRUE(window.rect().contains(PlaceOf(*button))) << NameOf(*button);
  }
}

void ExpectUsable(const QWidget& window) {
  // Layouts inside of scroll areas settle in several rounds.
  for (int round = 0; round < 6; ++round) QCoreApplication::processEvents();
  ExpectFitsOnScreen(window);
  ExpectNothingCut(window);
  ExpectNothingOverlaps(window);
  ExpectButtonsInView(window);
  if (const auto* main = qobject_cast<const QMainWindow*>(&window)) ExpectOnlyPartsScroll(*main);
}

}  // namespace kartocheck::test
