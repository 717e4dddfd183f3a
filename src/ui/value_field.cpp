#include "ui/value_field.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include "ui/accessible_roles.h"
#include "ui/contrast.h"

namespace kartocheck {

namespace {

// Between frame and text, in logical pixels.
constexpr int TextMargin = 2;
// Width of a field where there is room enough, in characters.
constexpr int UsualCharacters = 60;

}  // namespace

ValueField::ValueField(const QString& name, QWidget* parent) : TextLabel(parent, TextMargin) {
  InstallAccessibleRoles();
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  MakeSelectable(*this);
  LeaveRoomForLetters(*this, TextMargin);
  setFocusPolicy(Qt::StrongFocus);
  setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
  setBackgroundRole(QPalette::Base);
  setForegroundRole(QPalette::Text);
  setAutoFillBackground(true);
}

void ValueField::SetCaption(const QString& caption) {
  setAccessibleName(caption);
}

void ValueField::ShowValue(const QString& value) {
  const QString before = text();
  if (value == before) return;
  setText(value);
  QAccessibleTextUpdateEvent change(this, 0, before, value);
  QAccessible::updateAccessibility(&change);
  // An empty field says so in its description.
  QAccessibleEvent description(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&description);
}

QSize ValueField::sizeHint() const {
  const int width = fontMetrics().averageCharWidth() * UsualCharacters;
  return {width, heightForWidth(width)};
}

void ValueField::focusInEvent(QFocusEvent* event) {
  TextLabel::focusInEvent(event);
  const bool byTabKey =
      event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  if (byTabKey) setSelection(0, static_cast<int>(text().size()));
  update();
}

void ValueField::focusOutEvent(QFocusEvent* event) {
  TextLabel::focusOutEvent(event);
  update();
}

// Up and down walk through the fields of a list; a field of one line has no use for them itself.
void ValueField::keyPressEvent(QKeyEvent* event) {
  if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Down) {
    focusNextChild();
  } else if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Up) {
    focusPreviousChild();
  } else {
    TextLabel::keyPressEvent(event);
  }
}

void ValueField::paintEvent(QPaintEvent* event) {
  TextLabel::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  painter.setPen(MovedToContrast(palette().color(QPalette::Highlight),
                                 palette().color(QPalette::WindowText),
                                 palette().color(QPalette::Window), OutlineContrast));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace kartocheck
