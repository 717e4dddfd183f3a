#pragma once

#include <QLabel>

namespace kartocheck {

// A label whose letters are whole. In many fonts the dots of a capital umlaut stand higher than the
// line that the font asks for, and a label as high as its line cuts them off.
class TextLabel : public QLabel {
  Q_OBJECT

 public:
  // leastRoom: around a text that can be selected, in logical pixels.
  explicit TextLabel(QWidget* parent, int leastRoom = 0);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  int leastRoom_;
};

// A label that stands on one line where there is room for it, and on more where there is less.
class WrappingLabel final : public TextLabel {
  Q_OBJECT

 public:
  // mostCharacters: a longer line is wrapped even where there is room.
  WrappingLabel(const QString& name, int mostCharacters, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  int mostCharacters_;
};

// How far letters of this font reach out of their line, in logical pixels.
[[nodiscard]] int RoomAroundLine(const QFont& font);

// Gives the letters of a label this room, and at least `least` pixels of it around a text that can
// be selected.
void LeaveRoomForLetters(QLabel& label, int least = 0);

// Lets the user select the label's text with the mouse, and with the keyboard where asked for.
void MakeSelectable(QLabel& label, Qt::TextInteractionFlags flags = Qt::TextSelectableByMouse |
                                                                    Qt::TextSelectableByKeyboard);

}  // namespace kartocheck
