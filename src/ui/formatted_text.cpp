#include "ui/formatted_text.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>

namespace kartocheck {

namespace {

constexpr double DocumentPoints = 10.0;
constexpr double TwipsPerInch = 1440.0;

class Writer {
 public:
  explicit Writer(QTextEdit& view)
      : cursor_(view.document()),
        scale_(QFontInfo(view.font()).pointSizeF() / DocumentPoints),
        pixelsPerTwip_(view.logicalDpiX() / TwipsPerInch * scale_) {}

  void Write(const TextParagraph& paragraph) {
    if (isFirst_) {
      cursor_.setBlockFormat(BlockFormat(paragraph));
    } else {
      cursor_.insertBlock(BlockFormat(paragraph));
    }
    isFirst_ = false;
    for (const TextRun& run : paragraph.runs) cursor_.insertText(run.text, CharFormat(run));
  }

 private:
  [[nodiscard]] QTextBlockFormat BlockFormat(const TextParagraph& paragraph) const {
    const double left = paragraph.leftIndent * pixelsPerTwip_;
    QTextBlockFormat format;
    format.setAlignment(paragraph.isCentered ? Qt::AlignHCenter : Qt::AlignLeft);
    format.setLeftMargin(left);
    format.setTextIndent(paragraph.firstLineIndent * pixelsPerTwip_);
    format.setTopMargin(paragraph.spaceBefore * pixelsPerTwip_);
    format.setBottomMargin(paragraph.spaceAfter * pixelsPerTwip_);
    // A tab of a line that hangs out leads to where the other lines begin.
    format.setTabPositions({QTextOption::Tab(left, QTextOption::LeftTab)});
    return format;
  }

  [[nodiscard]] QTextCharFormat CharFormat(const TextRun& run) const {
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Arial")});
    format.setFontPointSize(run.halfPoints / 2.0 * scale_);
    format.setFontWeight(run.isBold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(run.isItalic);
    return format;
  }

  QTextCursor cursor_;
  double scale_;
  double pixelsPerTwip_;
  bool isFirst_ = true;
};

}  // namespace

void ShowFormattedText(QTextEdit& view, const FormattedText& text) {
  view.clear();
  Writer writer(view);
  for (const TextParagraph& paragraph : text) writer.Write(paragraph);
  view.moveCursor(QTextCursor::Start);
}

}  // namespace kartocheck
