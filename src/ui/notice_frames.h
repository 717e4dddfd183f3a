#pragma once

#include <QFrame>

class QLabel;

namespace kartocheck {

// Fram_Show_0: shown while the ports are scanned.
class WaitFrame final : public QFrame {
  Q_OBJECT

 public:
  explicit WaitFrame(QWidget* parent);

 Q_SIGNALS:
  // Escape was pressed while the frame is shown.
  void EndRequested();
};

// Fram_Show_1: shown while the user is led through the check of one port.
class DialogCheckFrame final : public QFrame {
  Q_OBJECT

 public:
  explicit DialogCheckFrame(QWidget* parent);

  // The port that is checked, and what is being asked about.
  void ShowPort(const QString& name);
  void ShowStep(const QString& step);

 private:
  QLabel* port_ = nullptr;
  QLabel* step_ = nullptr;
};

}  // namespace kartocheck
