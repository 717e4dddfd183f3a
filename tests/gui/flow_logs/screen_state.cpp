#include "gui/flow_logs/screen_state.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>

namespace kartocheck::test {

namespace {

// Facts of a control, one behind the other.
class Facts {
 public:
  void Add(const QString& fact) { facts_ << fact; }
  void AddText(QStringView name, const QString& text) {
    if (!text.isEmpty()) Add(name + u'=' + Quoted(text));
  }

  [[nodiscard]] QString Text() const { return facts_.join(u' '); }

 private:
  QStringList facts_;
};

void AddTabs(Facts& facts, const QTabWidget& tabs) {
  for (int tab = 0; tab < tabs.count(); ++tab) facts.AddText(u"tab", tabs.tabText(tab));
  facts.Add(u"in-front=" + QString::number(tabs.currentIndex()));
}

void AddEntries(Facts& facts, const QListWidget& list) {
  for (int row = 0; row < list.count(); ++row) {
    const QListWidgetItem* entry = list.item(row);
    facts.AddText(entry->isSelected() ? u"selected-entry" : u"entry", entry->text());
  }
  facts.Add(u"current=" + QString::number(list.currentRow()));
}

void AddCells(Facts& facts, const QTableWidget& table) {
  for (int column = 0; column < table.columnCount(); ++column) {
    const QTableWidgetItem* heading = table.horizontalHeaderItem(column);
    if (heading != nullptr) facts.Add(u"heading=" + Quoted(heading->text()));
  }
  for (int row = 0; row < table.rowCount(); ++row) {
    for (int column = 0; column < table.columnCount(); ++column) {
      const QTableWidgetItem* cell = table.item(row, column);
      if (cell != nullptr) facts.AddText(column == 0 ? u"row" : u"value", cell->text());
    }
  }
}

void AddContents(Facts& facts, const QWidget& widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    if (button->isChecked()) facts.Add(QStringLiteral("checked"));
    facts.AddText(u"text", button->text());
  } else if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    facts.AddText(u"text", label->text());
  } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
    facts.AddText(u"title", group->title());
  } else if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget)) {
    AddTabs(facts, *tabs);
  } else if (const auto* list = qobject_cast<const QListWidget*>(&widget)) {
    AddEntries(facts, *list);
  } else if (const auto* table = qobject_cast<const QTableWidget*>(&widget)) {
    AddCells(facts, *table);
  } else if (const auto* progress = qobject_cast<const QProgressBar*>(&widget)) {
    facts.Add(u"value=" + QString::number(progress->value()));
    facts.AddText(u"text", progress->text());
  } else if (const auto* plain = qobject_cast<const QPlainTextEdit*>(&widget)) {
    facts.AddText(u"text", plain->toPlainText());
  } else if (const auto* rich = qobject_cast<const QTextEdit*>(&widget)) {
    facts.AddText(u"text", rich->toPlainText());
  } else if (const auto* menu = qobject_cast<const QMenu*>(&widget)) {
    facts.AddText(u"title", menu->title());
  }
}

ControlState StateOfControl(const QWidget& widget) {
  Facts facts;
  AddContents(facts, widget);
  facts.AddText(u"tip", widget.toolTip());
  facts.AddText(u"spoken", widget.accessibleName());
  facts.AddText(u"spoken-more", widget.accessibleDescription());
  return {widget.isVisible(), widget.isEnabled(), facts.Text()};
}

ControlState StateOfControl(const QAction& entry) {
  Facts facts;
  if (entry.isChecked()) facts.Add(QStringLiteral("checked"));
  facts.AddText(u"text", entry.text());
  return {entry.isVisible(), entry.isEnabled(), facts.Text()};
}

// Qt names parts of its own controls so.
bool IsOfQt(const QString& name) {
  return name.isEmpty() || name.startsWith(u"qt_") || name == u"ScrollLeftButton" ||
         name == u"ScrollRightButton";
}

// Menus are windows; side windows and boxes are looked at by themselves.
bool IsInWindow(const QObject& child, const QWidget& window) {
  const auto* widget = qobject_cast<const QWidget*>(&child);
  return widget == nullptr || widget->window() == &window ||
         qobject_cast<const QMenu*>(widget) != nullptr;
}

template <typename Object>
void AddChildren(ScreenState& state, const QWidget& window) {
  for (const Object* child : window.findChildren<Object*>()) {
    const QString name = child->objectName();
    if (IsOfQt(name) || !IsInWindow(*child, window)) continue;
    QString key = name;
    for (int number = 2; state.count(key) > 0; ++number) {
      key = name + u'#' + QString::number(number);
    }
    state[key] = StateOfControl(*child);
  }
}

void LogNames(QStringView heading, const QStringList& names, FlowLog& log) {
  if (!names.isEmpty()) log.Line(u"  " + heading + u": " + names.join(u' '));
}

}  // namespace

ScreenState StateOf(const QWidget& window) {
  ScreenState state;
  AddChildren<QWidget>(state, window);
  AddChildren<QAction>(state, window);
  const QWidget* focus = window.focusWidget();
  state[QStringLiteral("(focus)")].contents = focus == nullptr ? QString() : focus->objectName();
  state[QStringLiteral("(title)")].contents = Quoted(window.windowTitle());
  state[QStringLiteral("(clipboard)")].contents = Quoted(QGuiApplication::clipboard()->text());
  return state;
}

void LogChanges(const ScreenState& before, const ScreenState& after, FlowLog& log) {
  QStringList gone, added, shown, hidden, enabled, disabled;
  for (const auto& [name, state] : before) {
    if (after.count(name) == 0) gone << name;
  }
  for (const auto& [name, state] : after) {
    const auto found = before.find(name);
    if (found == before.end()) added << name;
    const ControlState old = found == before.end() ? ControlState{} : found->second;
    if (state.isVisible != old.isVisible) (state.isVisible ? shown : hidden) << name;
    if (state.isEnabled != old.isEnabled) (state.isEnabled ? enabled : disabled) << name;
    if (state.contents != old.contents) log.Line(u"  " + name + u": " + state.contents);
  }
  LogNames(u"gone", gone, log);
  LogNames(u"added", added, log);
  LogNames(u"shown", shown, log);
  LogNames(u"hidden", hidden, log);
  LogNames(u"enabled", enabled, log);
  LogNames(u"disabled", disabled, log);
}

}  // namespace kartocheck::test
