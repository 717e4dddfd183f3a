#include "ui/readable_style.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

#include <memory>

#include "ui/contrast.h"
#include "ui/text_label.h"

namespace kartocheck {

namespace {

// Smoothed edges are fainter than their colour.
constexpr double DrawnOutlineContrast = OutlineContrast + 1.0;
constexpr double OutlineWidth = 1.4;

// Text on selected ground: the ground gives way, since the text's colour suits the desktop's other
// windows.
void SeparateSelection(QPalette& palette, QPalette::ColorGroup group) {
  const QColor text = palette.color(group, QPalette::HighlightedText);
  const QColor ground = palette.color(group, QPalette::Highlight);
  const QColor away =
      ContrastOf(text, Qt::black) > ContrastOf(text, Qt::white) ? Qt::black : Qt::white;
  const QColor moved = MovedToContrast(ground, away, text, TextContrast);
  if (moved != ground) palette.setColor(group, QPalette::Highlight, moved);
}

bool HasKeyboardFocus(const QStyleOption& option) {
  return option.state.testFlag(QStyle::State_HasFocus) &&
         option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

// Of a frame, the window's palette: fields have their own ground inside of it.
QColor OutlineColour(const QStyleOption& option) {
  const QPalette& palette = option.palette;
  const QColor window = palette.color(QPalette::Window);
  const QColor text = palette.color(QPalette::WindowText);
  const QColor from = HasKeyboardFocus(option) ? palette.color(QPalette::Highlight) : window;
  return MovedToContrast(from, text, window, DrawnOutlineContrast);
}

}  // namespace

ReadableStyle::ReadableStyle(const QString& base) : QProxyStyle(base) {}

void ReadableStyle::polish(QPalette& palette) {
  QProxyStyle::polish(palette);
  for (const auto group : {QPalette::Active, QPalette::Inactive}) SeparateSelection(palette, group);
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (baseStyle()->name() != u"fusion") return;
  // As wide as Fusion's own outlines, half a pixel inside of the rectangle.
  const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->save();
  painter->setBrush(Qt::NoBrush);
  painter->setPen(OutlineColour(*option));
  switch (element) {
    case PE_Frame:
    case PE_FrameLineEdit:
    case PE_IndicatorCheckBox:
      painter->drawRect(outline);
      break;
    case PE_IndicatorRadioButton:
      painter->setRenderHint(QPainter::Antialiasing);
      painter->setPen(QPen(OutlineColour(*option), OutlineWidth));
      painter->drawEllipse(outline);
      break;
    default:
      break;
  }
  painter->restore();
}

QSize ReadableStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                      const QSize& size, const QWidget* widget) const {
  const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
  const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
  if (type != CT_ItemViewItem || item == nullptr) return wanted;
  return wanted + QSize(0, 2 * RoomAroundLine(item->font));
}

// NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style
void InstallReadableStyle(const QString& base) {
  auto style = std::make_unique<ReadableStyle>(base);
  QApplication::setStyle(style.release());
}
// NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)

}  // namespace kartocheck
