#pragma once

#include <QWidget>

#include <array>

#include "ui/main_window/status_tab.h"

class QTabWidget;

namespace kartocheck {

class FieldGrid;
class ValueField;

// Fram_Show_2: what is known of the terminals, one tab a slot.
class TerminalStatusFrame final : public QWidget {
  Q_OBJECT

 public:
  explicit TerminalStatusFrame(QWidget* parent);

  void ShowSlot(int slot, const StatusTab& values);
  // What keeps the port of a slot from being used; empty where nothing does.
  void ShowHint(int slot, const QString& hint);
  // Brings the tab of a slot, 1 to 5, to the front.
  void ShowTab(int slot);
  // Title of the fifth tab.
  void NameFurtherPort(const QString& name);

 Q_SIGNALS:
  // The user chose a tab.
  void TabChosen();

 private:
  QWidget* NewTab(int tab);

  QTabWidget* TabStrip1;
  bool showingTab_ = false;  // the program changes the tab, not the user
  std::array<FieldGrid*, SlotCount> grids_{};
  std::array<ValueField*, SlotCount> hints_{};
};

}  // namespace kartocheck
