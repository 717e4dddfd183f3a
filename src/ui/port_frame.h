#pragma once

#include <QGroupBox>

#include <array>

#include "platform/port.h"

class QLabel;
class QListWidget;
class QRadioButton;

namespace kartocheck {

class ValueField;

// Fram_Comx: the choice of the port, COM 1 to COM 4 or one of the further ports in the list.
class PortFrame final : public QGroupBox {
  Q_OBJECT

 public:
  explicit PortFrame(QWidget* parent);

  // slot: 1 to 5.
  void EnablePort(int slot, bool enabled);
  // The further ports; chosen: index of the marked line, or -1.
  void ShowPortList(const QStringList& lines, int chosen);
  // What keeps the port of a slot from being used, as a tool tip; empty where nothing does.
  void ShowPortHint(int slot, const QString& hint);
  // Why no reader is in the list, below it; the field is hidden where nothing is to be said.
  void ShowHintsWithoutReader(const QStringList& hints);
  // Marks option button `member`, 0 to 4, without reporting it.
  void MarkPort(int member);
  // While an action runs no other port can be chosen.
  void SetActionRunning(bool running);

 Q_SIGNALS:
  // A click on option button `member`, 0 to 4.
  void PortChosen(int member);
  // A choice in the list of further ports, by index.
  void FurtherPortChosen(int index);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void AddOption(int member);
  void CreateList();
  void SetLeastLines(int lines);
  void CreateHint();
  void GiveHintRoom();
  void ReportChosenEntry();
  void UpdateEnabled();

  std::array<QRadioButton*, SlotCount> Opti_Comx{};
  std::array<QLabel*, SlotCount> Labe_Comx{};
  QListWidget* List1 = nullptr;
  ValueField* Labl_Hinweis = nullptr;
  QStringList lines_;  // in the list

  std::array<bool, SlotCount> portEnabled_;
  bool actionRunning_ = false;
};

}  // namespace kartocheck
