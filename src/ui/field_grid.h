#pragma once

#include <QWidget>

#include <vector>

class QLabel;

namespace kartocheck {

class ValueField;

// Rows of a label and the value field it describes, top to bottom.
class FieldGrid final : public QWidget {
  Q_OBJECT

 public:
  // The object names of labels and value fields are the given ones with "_" and the row, from 0.
  FieldGrid(int rows, const QString& labelName, const QString& valueName, QWidget* parent);

  void SetLabel(int row, const QString& text);
  void SetValue(int row, const QString& text);

 private:
  struct Row {
    QLabel* label;
    ValueField* value;
  };
  std::vector<Row> rows_;
};

}  // namespace kartocheck
