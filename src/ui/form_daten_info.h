#pragma once

#include <QDialog>

#include <array>

#include "ui/main_window/scan_result.h"

class QLabel;

namespace kartocheck {

class ScanResultLine;

// The result of a full scan.
class Form_DatenInfo final : public QDialog {
  Q_OBJECT

 public:
  Form_DatenInfo(const ScanResult& result, QWidget* parent);

 private:
  void Fill(const ScanResult& result);

  std::array<ScanResultLine*, ScanResultRows> lines_{};
  QLabel* hints_ = nullptr;
  QLabel* summary_ = nullptr;  // Labe_DatenInfo1_4
};

}  // namespace kartocheck
