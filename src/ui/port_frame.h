#pragma once

#include <QGroupBox>

#include <array>

#include "ui/main_window/view_state.h"

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
  void ShowPortList(const PortList& list);
  // How the device behind the chosen further port is called; empty where that is not known.
  void ShowDevice(const QString& device);
  // Why the port of a slot cannot be used, or what choosing it does: below the list while the port
  // is the chosen one or has the focus, and as a tool tip. Empty where nothing is to be said.
  void ShowPortHint(int slot, const QString& hint);
  // Why no reader is in the list, below it; the field is hidden where nothing is to be said.
  void ShowHintsWithoutReader(const QStringList& hints);
  // Marks option button `member`, 0 to 4, without reporting it.
  void MarkPort(int member);
  // While an action runs no other port can be chosen.
  void SetActionRunning(bool running);

 Q_SIGNALS:
  // A click on option button `member`, 0 to 4, or one reached by an arrow key.
  void PortChosen(int member);
  void PortMovedTo(int member);
  // A choice in the list of further ports, by index.
  void FurtherPortChosen(int index);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void AddOption(int member);
  void CreateList();
  ValueField* NewHint(const QString& name);
  [[nodiscard]] std::size_t ShownMember() const;
  void ShowFacts();
  void SetLeastLines(int lines);
  void GiveHintRoom();
  void ReportChosenEntry();
  void UpdateEnabled();

  std::array<QRadioButton*, SlotCount> Opti_Comx{};
  std::array<QLabel*, SlotCount> Labe_Comx{};
  QListWidget* List1 = nullptr;
  ValueField* Labl_Schnittstelle = nullptr;  // about the port that is chosen or has the focus
  ValueField* Labl_Hinweis = nullptr;
  std::vector<ListedPort> listed_;
  QString device_;
  std::array<QString, SlotCount> hints_;
  bool isArrowPressed_ = false;

  std::array<bool, SlotCount> portEnabled_;
  bool actionRunning_ = false;
};

}  // namespace kartocheck
