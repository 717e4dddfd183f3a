#include "ui/content_area.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>

namespace kartocheck {

ContentArea::ContentArea(QWidget* content, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setWidget(content);
  viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
  // Qt does so only where the Tab key goes on within the area.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*before*/, QWidget* now) {
    if (now != nullptr && widget() != nullptr && widget()->isAncestorOf(now)) {
      ensureWidgetVisible(now);
    }
  });
}

void ContentArea::KeepWidth() {
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { updateGeometry(); });
}

void ContentArea::ScrollByKeysOf(QWidget& window) {
  window.installEventFilter(this);
}

bool ContentArea::KeepsWidth() const {
  return horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOff;
}

QSize ContentArea::LeastContentSize() const {
  return widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
}

int ContentArea::ScrollBarWidth() const {
  return verticalScrollBar()->maximum() > 0 ? verticalScrollBar()->sizeHint().width() : 0;
}

QSize ContentArea::sizeHint() const {
  const QSize wanted = widget()->sizeHint().expandedTo(LeastContentSize());
  return KeepsWidth() ? wanted + QSize(ScrollBarWidth(), 0) : wanted;
}

QSize ContentArea::minimumSizeHint() const {
  const QSize least = QScrollArea::minimumSizeHint().boundedTo(LeastContentSize());
  if (!KeepsWidth()) return least;
  return {LeastContentSize().width() + ScrollBarWidth(), least.height()};
}

bool ContentArea::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_PageDown || key == Qt::Key_PageUp) {
      keyPressEvent(static_cast<QKeyEvent*>(event));
      return true;
    }
  }
  return QScrollArea::eventFilter(watched, event);
}

ContentArea* Scrolling(QWidget* content, QWidget* parent) {
  return new ContentArea(content, parent);
}

}  // namespace kartocheck
