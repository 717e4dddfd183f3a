#pragma once

#include <QGroupBox>

#include "ui/main_window/data_frame.h"

namespace kartocheck {

class FieldGrid;

// Fram_Show_3: the insured person's data.
class InsuredDataFrame final : public QGroupBox {
  Q_OBJECT

 public:
  explicit InsuredDataFrame(QWidget* parent);

  void ShowData(const DataFrame& frame);

 private:
  FieldGrid* grid_;
};

}  // namespace kartocheck
