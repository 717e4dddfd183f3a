#pragma once

#include <QFrame>

namespace kartocheck {

// Fram_Show_0: shown while the ports are scanned.
class WaitFrame final : public QFrame {
  Q_OBJECT

 public:
  explicit WaitFrame(QWidget* parent);
};

// Fram_Show_1: shown while the user is led through the check of one port.
class DialogCheckFrame final : public QFrame {
  Q_OBJECT

 public:
  explicit DialogCheckFrame(QWidget* parent);
};

}  // namespace kartocheck
