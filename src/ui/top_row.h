#pragma once

#include <QBoxLayout>
#include <QWidget>

namespace kartocheck {

// Two controls side by side, or below one another where the window is too narrow for both.
class TopRow final : public QWidget {
  Q_OBJECT

 public:
  TopRow(QWidget& left, QWidget& right, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int WidthSideBySide() const;

  QWidget& left_;
  QWidget& right_;
  QBoxLayout layout_;
};

}  // namespace kartocheck
