#pragma once

#include <QProxyStyle>

namespace kartocheck {

// The desktop's style, with what it takes to read it: selected text stands out from its ground, and
// the rows of a list are as high as their letters. Where Qt's own style "Fusion" stands in for one
// of the desktop's, the outlines of fields, radio buttons and check boxes stand out from the
// window.
class ReadableStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  // base: name of the style below it; the desktop's own where it is empty.
  explicit ReadableStyle(const QString& base);

  using QProxyStyle::polish;
  void polish(QPalette& palette) override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& size, const QWidget* widget) const override;
};

// Makes it the style of the application, over the desktop's own or another one.
void InstallReadableStyle(const QString& base = {});

}  // namespace kartocheck
