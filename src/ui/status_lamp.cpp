#include "ui/status_lamp.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/accessible_roles.h"

namespace kartocheck {

namespace {

QStringView TextOf(LampState state) {
  switch (state) {
    case LampState::Off:
      return u"keine Verbindung";
    case LampState::Waiting:
      return u"wartet auf Antwort";
    case LampState::Answered:
      return u"Antwort erhalten";
  }
  return {};
}

// The signs are drawn in a square of 16 units.
constexpr double Units = 16.0;
constexpr double SignWidth = 1.6;

QPainterPath CheckMark() {
  QPainterPath path(QPointF(4.6, 8.4));
  path.lineTo(7.1, 10.9);
  path.lineTo(11.4, 5.4);
  return path;
}

QPainterPath Hourglass() {
  QPainterPath path(QPointF(5.2, 4.2));
  path.lineTo(10.8, 4.2);
  path.lineTo(5.2, 11.8);
  path.lineTo(10.8, 11.8);
  path.closeSubpath();
  return path;
}

}  // namespace

StatusLamp::StatusLamp(const QString& name, const QString& caption, QWidget* parent)
    : QWidget(parent), caption_(caption) {
  InstallAccessibleRoles();
  setObjectName(name);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  SetState(LampState::Off);
}

void StatusLamp::SetState(LampState state) {
  state_ = state;
  const QString text = caption_ + u": " + TextOf(state).toString();
  setAccessibleName(text);
  setToolTip(text);
  update();
}

QSize StatusLamp::sizeHint() const {
  const int side = fontMetrics().height() + 4;
  return {side, side};
}

QColor StatusLamp::Colour() const {
  switch (state_) {
    case LampState::Waiting:
      return {255, 255, 0};
    case LampState::Answered:
      return {0, 255, 0};
    case LampState::Off:
      break;
  }
  return palette().color(QPalette::Button);
}

void StatusLamp::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(width() / Units, height() / Units);
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.0));
  painter.setBrush(Colour());
  painter.drawEllipse(QRectF(1, 1, Units - 2, Units - 2));
  if (state_ == LampState::Off) return;

  painter.setPen(QPen(Qt::black, SignWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(state_ == LampState::Waiting ? Hourglass() : CheckMark());
}

}  // namespace kartocheck
