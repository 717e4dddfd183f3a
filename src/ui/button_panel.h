#pragma once

#include <QFrame>

#include <array>

#include "ui/main_window/view_state.h"

class QToolButton;

namespace kartocheck {

// Pict_MKT_Test: the picture buttons that start the actions.
class ButtonPanel final : public QFrame {
  Q_OBJECT

 public:
  static constexpr int ButtonCount = ActionCount;

  explicit ButtonPanel(QWidget* parent);

  // index: 0 to 5.
  [[nodiscard]] QWidget* Button(int index) const;

 Q_SIGNALS:
  // A click on button `index`, 0 to 5.
  void Pressed(int index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::array<QToolButton*, ButtonCount> CmdB_MKt_Test{};
};

}  // namespace kartocheck
