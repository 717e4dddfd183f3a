#include "ui/terminal_status_frame.h"

#include <QGroupBox>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/content_area.h"
#include "ui/field_grid.h"
#include "ui/plain_label.h"
#include "ui/value_field.h"

namespace kartocheck {

namespace {

constexpr auto TabTitles =
    std::to_array<QStringView>({u"COM 1", u"COM 2", u"COM 3", u"COM 4", u"weitere ..."});
static_assert(TabTitles.size() == SlotCount);

}  // namespace

TerminalStatusFrame::TerminalStatusFrame(QWidget* parent)
    : QWidget(parent), TabStrip1(new QTabWidget(this)) {
  TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
  TabStrip1->setAccessibleName(QStringLiteral("MKT Status je Schnittstelle"));
  for (int tab = 0; tab < SlotCount; ++tab) {
    TabStrip1->addTab(NewTab(tab), TabTitles.at(static_cast<std::size_t>(tab)).toString());
  }
  connect(TabStrip1, &QTabWidget::currentChanged, this, [this] {
    if (!showingTab_) Q_EMIT TabChosen();
  });
  // A click on the tab in front changes nothing, but is one all the same.
  connect(TabStrip1, &QTabWidget::tabBarClicked, this, [this](int tab) {
    if (tab == TabStrip1->currentIndex()) Q_EMIT TabChosen();
  });
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(TabStrip1);
}

QWidget* TerminalStatusFrame::NewTab(int tab) {
  auto* page = new QWidget(this);
  auto* frame = new QGroupBox(QStringLiteral("Status"), page);
  frame->setObjectName(MemberName(u"Fram_Tab1", tab));
  auto* grid = new FieldGrid(StatusRowCount, MemberName(u"Labe_Status", tab),
                             MemberName(u"Labl_Status", tab), frame);
  for (int row = 0; row < StatusRowCount; ++row) {
    grid->SetLabel(row, StatusRowLabel(tab + 1, row).toString());
  }
  grids_.at(static_cast<std::size_t>(tab)) = grid;

  auto* hint = new ValueField(MemberName(u"Labl_StatusHinweis", tab), frame);
  hint->SetCaption(QStringLiteral("Hinweis:"));
  hint->hide();
  hints_.at(static_cast<std::size_t>(tab)) = hint;

  auto* content = new QWidget(frame);
  auto* contentLayout = new QVBoxLayout(content);
  contentLayout->setContentsMargins(0, 0, 0, 0);
  contentLayout->addWidget(grid, 1);
  contentLayout->addWidget(hint);
  auto* frameLayout = new QVBoxLayout(frame);
  frameLayout->addWidget(Scrolling(content, frame));
  auto* pageLayout = new QVBoxLayout(page);
  pageLayout->addWidget(frame);
  return page;
}

void TerminalStatusFrame::ShowSlot(int slot, const StatusTab& values) {
  FieldGrid* grid = grids_.at(static_cast<std::size_t>(slot - 1));
  for (int row = 0; row < StatusRowCount; ++row) {
    grid->SetValue(row, values.at(static_cast<std::size_t>(row)));
  }
}

void TerminalStatusFrame::ShowHint(int slot, const QString& hint) {
  ValueField* field = hints_.at(static_cast<std::size_t>(slot - 1));
  field->ShowValue(hint);
  field->setVisible(!hint.isEmpty());
}

void TerminalStatusFrame::ShowTab(int slot) {
  showingTab_ = true;
  TabStrip1->setCurrentIndex(slot - 1);
  showingTab_ = false;
}

void TerminalStatusFrame::NameFurtherPort(const QString& name) {
  TabStrip1->setTabText(FurtherPortSlot - 1, name);
}

}  // namespace kartocheck
