#include "ui/field_grid.h"

#include <QGridLayout>
#include <QScrollArea>

#include "ui/plain_label.h"
#include "ui/value_field.h"

namespace kartocheck {

namespace {

// Between the rows, in logical pixels: close enough for 18 rows on a small screen.
constexpr int RowSpacing = 4;

// A scroll area that asks for as much room as its fields need.
class FieldArea final : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

  [[nodiscard]] QSize sizeHint() const override {
    return widget() == nullptr ? QScrollArea::sizeHint() : widget()->sizeHint();
  }
};

}  // namespace

FieldGrid::FieldGrid(int rows, const QString& labelName, const QString& valueName, QWidget* parent)
    : QWidget(parent) {
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setVerticalSpacing(RowSpacing);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(rows, 1);
  for (int row = 0; row < rows; ++row) {
    QLabel* label = PlainLabel(MemberName(labelName, row), QString(), this);
    auto* value = new ValueField(MemberName(valueName, row), this);
    label->setBuddy(value);
    layout->addWidget(label, row, 0);
    layout->addWidget(value, row, 1);
    rows_.push_back({label, value});
  }
}

void FieldGrid::SetLabel(int row, const QString& text) {
  const Row& fields = rows_.at(static_cast<std::size_t>(row));
  fields.label->setText(text);
  fields.value->SetCaption(text);
}

void FieldGrid::SetValue(int row, const QString& text) {
  rows_.at(static_cast<std::size_t>(row)).value->ShowValue(text);
}

QScrollArea* Scrolling(FieldGrid* grid, QWidget* parent) {
  auto* area = new FieldArea(parent);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(grid);
  area->viewport()->setAutoFillBackground(false);
  grid->setAutoFillBackground(false);
  return area;
}

}  // namespace kartocheck
