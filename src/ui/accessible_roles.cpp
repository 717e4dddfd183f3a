#include "ui/accessible_roles.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QRadioButton>
#include <QToolButton>

#include "ui/button_panel.h"
#include "ui/scan_result_line.h"
#include "ui/status_lamp.h"
#include "ui/value_field.h"

namespace kartocheck {

namespace {

// A read-only text. Its name is what it holds, so the value is told by its text, and where there is
// none by its description.
class AccessibleValueField final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit AccessibleValueField(ValueField* field)
      : QAccessibleWidget(field, QAccessible::EditableText) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return Field().text();
    if (kind == QAccessible::Description && Field().text().isEmpty()) {
      return QStringLiteral("leer");
    }
    return QAccessibleWidget::text(kind);
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.selectableText = true;
    return state;
  }

  void selection(int index, int* start, int* end) const override {
    const bool isThere = index == 0 && Field().hasSelectedText();
    *start = isThere ? Field().selectionStart() : 0;
    *end = isThere ? *start + static_cast<int>(Field().selectedText().size()) : 0;
  }
  [[nodiscard]] int selectionCount() const override { return Field().hasSelectedText() ? 1 : 0; }
  void addSelection(int start, int end) override { setSelection(0, start, end); }
  void removeSelection(int index) override { setSelection(index, 0, 0); }
  void setSelection(int index, int start, int end) override {
    if (index == 0 && start >= 0 && start <= end && end <= characterCount()) {
      Field().setSelection(start, end - start);
    }
  }

  [[nodiscard]] int cursorPosition() const override {
    int start = 0;
    int end = 0;
    selection(0, &start, &end);
    return end;
  }
  void setCursorPosition(int position) override { setSelection(0, position, position); }

  [[nodiscard]] QString text(int start, int end) const override {
    return Field().text().mid(start, end - start);
  }
  [[nodiscard]] int characterCount() const override {
    return static_cast<int>(Field().text().size());
  }

  // A field is a line or two: where in it a character stands is as good as where the field is.
  [[nodiscard]] QRect characterRect(int /*offset*/) const override { return rect(); }
  [[nodiscard]] int offsetAtPoint(const QPoint& point) const override {
    return rect().contains(point) ? 0 : -1;
  }
  void scrollToSubstring(int /*start*/, int /*end*/) override {}
  [[nodiscard]] QString attributes(int /*offset*/, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }

 private:
  [[nodiscard]] ValueField& Field() const { return *static_cast<ValueField*>(widget()); }
};

// A control that is read as one, by its name. What it is put together of is not told again, nor is
// a tool tip that says the same; without a name there is nothing to read.
class AccessibleWhole final : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
    return -1;
  }

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const QString text = QAccessibleWidget::text(kind);
    const bool isRepeated =
        kind == QAccessible::Description && text == QAccessibleWidget::text(QAccessible::Name);
    return isRepeated ? QString() : text;
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (text(QAccessible::Name).isEmpty()) state.invisible = true;
    return state;
  }
};

// A button that starts something. Qt's own would be answered only when all has ended, and a screen
// reader waits for the answer; a radio button of Qt's is marked, which is no click; and a tool
// button of Qt's is a check box even where one of several is chosen.
class AccessibleStarter final : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name && !Button().text().isEmpty()) {
      return Button().text().remove(u'&');
    }
    if (kind == QAccessible::Accelerator) {
      return Button().shortcut().toString(QKeySequence::NativeText);
    }
    return QAccessibleWidget::text(kind);
  }

  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (Button().isEnabled()) names.prepend(pressAction());
    return names;
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = Button().isCheckable();
    state.checked = Button().isChecked();
    return state;
  }

  void doAction(const QString& name) override {
    if (name == pressAction()) {
      Button().animateClick();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  [[nodiscard]] QAbstractButton& Button() const { return *static_cast<QAbstractButton*>(widget()); }
};

QAccessibleInterface* NewAccessible(const QString& /*className*/, QObject* object) {
  if (auto* field = qobject_cast<ValueField*>(object)) return new AccessibleValueField(field);
  if (auto* lamp = qobject_cast<StatusLamp*>(object)) {
    return new AccessibleWhole(lamp, QAccessible::Graphic);
  }
  if (auto* line = qobject_cast<ScanResultLine*>(object)) {
    return new AccessibleWhole(line, QAccessible::StaticText);
  }
  if (auto* option = qobject_cast<QRadioButton*>(object)) {
    return new AccessibleStarter(option, QAccessible::RadioButton);
  }
  auto* button = qobject_cast<QToolButton*>(object);
  if (button != nullptr && button->autoExclusive()) {
    return new AccessibleStarter(button, QAccessible::RadioButton);
  }
  if (button != nullptr && qobject_cast<ButtonPanel*>(button->parent()) != nullptr) {
    return new AccessibleStarter(button, QAccessible::Button);
  }
  return nullptr;
}

}  // namespace

void InstallAccessibleRoles() {
  QAccessible::installFactory(NewAccessible);
}

}  // namespace kartocheck
