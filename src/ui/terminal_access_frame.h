#pragma once

#include <QGroupBox>

#include <array>

#include "platform/lamps.h"

namespace kartocheck {

class StatusLamp;

// Fram_MKTStatus: the two lamps that show the state of the link and of the card access.
class TerminalAccessFrame final : public QGroupBox {
  Q_OBJECT

 public:
  explicit TerminalAccessFrame(QWidget* parent);

  void SetLamp(Lamp lamp, LampState state);

 private:
  std::array<StatusLamp*, LampCount> Shap_Lampe{};
};

}  // namespace kartocheck
