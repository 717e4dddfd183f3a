#pragma once

#include <QWidget>

#include "platform/lamps.h"

namespace kartocheck {

// A round activity lamp. Each state has its own sign besides its colour: an empty ring, an
// hourglass, a check mark.
class StatusLamp final : public QWidget {
  Q_OBJECT

 public:
  // caption: what the lamp stands for, told with the state to screen readers and in the tool tip.
  StatusLamp(const QString& name, const QString& caption, QWidget* parent);

  void SetState(LampState state);
  [[nodiscard]] LampState State() const { return state_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QColor Colour() const;

  QString caption_;
  LampState state_ = LampState::Off;
};

}  // namespace kartocheck
