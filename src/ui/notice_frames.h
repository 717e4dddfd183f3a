#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace kartocheck {

// A hidden button that gives up the call that the terminal has not answered.
[[nodiscard]] QPushButton* GiveUpButton(const QString& name, QWidget* parent);

// Fram_Show_0: shown while the ports are scanned.
class WaitFrame final : public QFrame {
  Q_OBJECT

 public:
  explicit WaitFrame(QWidget* parent);

  // Offers to give up the call that the terminal has not answered, or does not any more.
  void OfferToGiveUp(bool offered);
  // Offers to end the search, or does not any more.
  void OfferToEndSearch(bool offered);

 Q_SIGNALS:
  // The user will not wait for the call or the search any longer.
  void EndRequested();

 private:
  void AddButton(QPushButton* button);

  QLabel* searchHint_ = nullptr;
  QPushButton* endSearch_ = nullptr;
  QPushButton* giveUp_ = nullptr;
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
