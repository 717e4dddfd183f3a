#include "ui/field_grid.h"

#include <QGridLayout>

#include "ui/plain_label.h"
#include "ui/value_field.h"

namespace kartocheck {

namespace {

// Between the rows, in logical pixels: close enough for 18 rows on a small screen.
constexpr int RowSpacing = 4;

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

}  // namespace kartocheck
