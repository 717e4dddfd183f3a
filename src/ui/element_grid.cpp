#include "ui/element_grid.h"

#include <QAction>
#include <QHeaderView>

#include <algorithm>

#include "ui/secret_clipboard.h"

namespace kartocheck {

namespace {

constexpr int NameColumn = 0;
constexpr int ValueColumn = 1;

// The columns' widths where their texts need no more. 15 twips are a pixel at 96 dpi.
constexpr int NameColumnTwips = 4000;
constexpr int ValueColumnTwips = 3770;
constexpr int TwipsPerPixel = 15;
// Rows that are seen without scrolling, where the screen has the room.
constexpr int VisibleRows = 14;

QTableWidgetItem* Cell(const QString& text) {
  auto* cell = new QTableWidgetItem(text);
  cell->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
  return cell;
}

// A line break or a tab within a value would look like another row or column.
QString CopyText(QString text) {
  for (QChar& character : text) {
    if (character == u'\t' || character == u'\n' || character == u'\r') character = u' ';
  }
  return text;
}

}  // namespace

ElementGrid::ElementGrid(QWidget* parent) : QTableWidget(0, 2, parent) {
  setObjectName(QStringLiteral("MSFlexGrid1"));
  setAccessibleName(QStringLiteral("Elementliste"));
  setTabKeyNavigation(false);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setWordWrap(true);
  setAlternatingRowColors(true);
  // A long value makes a row higher than the window.
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  setColumnWidth(NameColumn, NameColumnTwips / TwipsPerPixel);
  setColumnWidth(ValueColumn, ValueColumnTwips / TwipsPerPixel);
  setFocusPolicy(Qt::NoFocus);
  AddCommands();
}

QSize ElementGrid::sizeHint() const {
  return {columnWidth(NameColumn) + ValueColumnTwips / TwipsPerPixel + 2 * frameWidth(),
          horizontalHeader()->sizeHint().height() +
              verticalHeader()->defaultSectionSize() * VisibleRows};
}

void ElementGrid::AddCommands() {
  auto* copy = new QAction(QStringLiteral("&Kopieren"), this);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  connect(copy, &QAction::triggered, this, [this] { CopySelection(); });
  auto* all = new QAction(QStringLiteral("&Alles auswählen"), this);
  all->setShortcut(QKeySequence::SelectAll);
  all->setShortcutContext(Qt::WidgetShortcut);
  connect(all, &QAction::triggered, this, &QTableWidget::selectAll);
  addActions({copy, all});
  setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ElementGrid::ShowList(const ElementList& list) {
  setHorizontalHeaderLabels({ElementNamesHeading.toString(), list.valueHeading.toString()});
  clearSelection();
  setRowCount(static_cast<int>(list.rows.size()));
  for (int row = 0; row < rowCount(); ++row) {
    const VsdField& field = list.rows[static_cast<std::size_t>(row)];
    setItem(row, NameColumn, Cell(field.name));
    setItem(row, ValueColumn, Cell(field.value));
  }
  setColumnWidth(NameColumn,
                 std::max(NameColumnTwips / TwipsPerPixel, sizeHintForColumn(NameColumn)));
  scrollToTop();
  // An empty list has nothing to show the focus on.
  setFocusPolicy(rowCount() == 0 ? Qt::NoFocus : Qt::StrongFocus);
}

void ElementGrid::CopySelection() {
  QStringList lines;
  for (int row = 0; row < rowCount(); ++row) {
    QStringList cells;
    for (const int column : {NameColumn, ValueColumn}) {
      const QTableWidgetItem* cell = item(row, column);
      if (cell->isSelected()) cells.append(CopyText(cell->text()));
    }
    if (!cells.isEmpty()) lines.append(cells.join(u'\t'));
  }
  if (!lines.isEmpty()) CopySecret(lines.join(QStringLiteral("\r\n")));
}

}  // namespace kartocheck
