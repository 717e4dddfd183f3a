#pragma once

#include <QWidget>

#include "ui/main_window/scan_result.h"

class QLabel;

namespace kartocheck {

// A row of the scan's result: its text, and over the gaps that the text leaves the number of the
// port and the key to press. They keep their places in any font.
class ScanResultLine final : public QWidget {
  Q_OBJECT

 public:
  // Object names: Labe_DatenInfo1_<row>, Labe_DatenInfo2_<row>, Imag_DatenInfo1_<row>.
  ScanResultLine(int row, QWidget* parent);

  void ShowRow(const ScanResultRow& row);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void PlaceOverGaps();

  QLabel* Labe_DatenInfo1;
  QLabel* Labe_DatenInfo2;
  QLabel* Imag_DatenInfo1;
};

}  // namespace kartocheck
