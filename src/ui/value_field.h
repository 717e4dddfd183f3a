#pragma once

#include "ui/text_label.h"

namespace kartocheck {

// A read-only field for a text from outside, a card or a terminal. The text is shown as it is,
// wrapped where it is longer than the field, and can be selected with mouse and keyboard.
class ValueField final : public TextLabel {
  Q_OBJECT

 public:
  ValueField(const QString& name, QWidget* parent);

  // What the field holds, as the label beside it says: the field's name for screen readers.
  void SetCaption(const QString& caption);
  void ShowValue(const QString& value);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kartocheck
