#include "ui/insured_data_frame.h"

#include <QVBoxLayout>

#include "ui/content_area.h"
#include "ui/field_grid.h"

namespace kartocheck {

InsuredDataFrame::InsuredDataFrame(QWidget* parent)
    : QGroupBox(parent),
      grid_(new FieldGrid(DataRowCount, QStringLiteral("Labl_Name"), QStringLiteral("Labl_Wert"),
                          this)) {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(Scrolling(grid_, this));
  ShowData(EmptyDataFrame());
}

void InsuredDataFrame::ShowData(const DataFrame& frame) {
  setTitle(frame.title);
  for (int row = 0; row < DataRowCount; ++row) {
    const auto index = static_cast<std::size_t>(row);
    grid_->SetLabel(row, frame.labels[index].toString());
    grid_->SetValue(row, frame.values[index]);
  }
}

}  // namespace kartocheck
