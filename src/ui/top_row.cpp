#include "ui/top_row.h"

#include <algorithm>

namespace kartocheck {

TopRow::TopRow(QWidget& left, QWidget& right, QWidget* parent)
    : QWidget(parent), left_(left), right_(right), layout_(QBoxLayout::LeftToRight, this) {
  layout_.setContentsMargins(0, 0, 0, 0);
  layout_.addWidget(&left);
  layout_.addStretch();
  layout_.addWidget(&right);
}

int TopRow::WidthSideBySide() const {
  return left_.sizeHint().width() + layout_.spacing() + right_.sizeHint().width();
}

QSize TopRow::sizeHint() const {
  return {WidthSideBySide(), layout_.sizeHint().height()};
}

QSize TopRow::minimumSizeHint() const {
  return {std::max(left_.minimumSizeHint().width(), right_.minimumSizeHint().width()),
          layout_.minimumSize().height()};
}

void TopRow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layout_.setDirection(width() < WidthSideBySide() ? QBoxLayout::TopToBottom
                                                   : QBoxLayout::LeftToRight);
}

}  // namespace kartocheck
