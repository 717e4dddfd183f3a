#pragma once

#include <QScrollArea>

namespace kartocheck {

// What may need more room than the screen has. It asks for the room of its content, and scrolls
// where it gets less; whatever gets the keyboard's focus comes into view.
class ContentArea final : public QScrollArea {
  Q_OBJECT

 public:
  ContentArea(QWidget* content, QWidget* parent);

  // The content is never narrower than it has to be, and scrolls up and down only.
  void KeepWidth();
  // The keys that scroll, where nothing in the window has a use for them.
  void ScrollByKeysOf(QWidget& window);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool KeepsWidth() const;
  [[nodiscard]] QSize LeastContentSize() const;
  [[nodiscard]] int ScrollBarWidth() const;
};

// The content in such an area.
[[nodiscard]] ContentArea* Scrolling(QWidget* content, QWidget* parent);

}  // namespace kartocheck
