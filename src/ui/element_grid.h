#pragma once

#include <QTableWidget>

#include "ui/main_window/egk_info.h"

namespace kartocheck {

// MSFlexGrid1: names and values of a VSD document's elements. What is marked can be copied with
// Ctrl+C and from the context menu, a line a row, the columns parted by a tab.
class ElementGrid final : public QTableWidget {
  Q_OBJECT

 public:
  explicit ElementGrid(QWidget* parent);

  void ShowList(const ElementList& list);

  [[nodiscard]] QSize sizeHint() const override;

 private:
  void AddCommands();
  void CopySelection();
};

}  // namespace kartocheck
