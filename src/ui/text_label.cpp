#include "ui/text_label.h"

#include <QEvent>
#include <QFontMetrics>
#include <QResizeEvent>
#include <QTextDocument>
#include <QTextFrame>

#include <algorithm>

namespace kartocheck {

namespace {

// The highest and lowest letters of German texts and names.
constexpr QStringView HighAndLow = u"ÄÖÜÅÉÇgjpqy";

// A label with text that can be selected draws it as a document, and nothing outside of the
// document's own area. It resets the document's margins, but not its padding.
void PadDocument(QTextDocument& document, int padding) {
  QTextFrameFormat format = document.rootFrame()->frameFormat();
  if (format.hasProperty(QTextFormat::FramePadding) && format.padding() == padding) return;
  format.setPadding(padding);
  document.rootFrame()->setFrameFormat(format);
}

}  // namespace

TextLabel::TextLabel(QWidget* parent, int leastRoom) : QLabel(parent), leastRoom_(leastRoom) {
  LeaveRoomForLetters(*this, leastRoom_);
}

void TextLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange) LeaveRoomForLetters(*this, leastRoom_);
}

WrappingLabel::WrappingLabel(const QString& name, int mostCharacters, QWidget* parent)
    : TextLabel(parent), mostCharacters_(mostCharacters) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
}

QSize WrappingLabel::sizeHint() const {
  const int room = 2 * RoomAroundLine(font()) + 1;
  const int line = fontMetrics().size(0, text()).width();
  const int most = fontMetrics().averageCharWidth() * mostCharacters_;
  const int width = std::max(std::min(line, most) + room, TextLabel::minimumSizeHint().width());
  return {width, heightForWidth(width)};
}

QSize WrappingLabel::minimumSizeHint() const {
  return {TextLabel::minimumSizeHint().width(), heightForWidth(std::max(width(), 1))};
}

// Its least height is that of its lines, and their number changes with its width.
void WrappingLabel::resizeEvent(QResizeEvent* event) {
  TextLabel::resizeEvent(event);
  if (event->oldSize().width() != event->size().width()) updateGeometry();
}

int RoomAroundLine(const QFont& font) {
  const QFontMetrics metrics(font);
  const QRect letters = metrics.tightBoundingRect(HighAndLow.toString());
  return std::max({0, -letters.top() - metrics.ascent(), letters.bottom() + 1 - metrics.descent()});
}

void LeaveRoomForLetters(QLabel& label, int least) {
  const int room = RoomAroundLine(label.font());
  auto* document = label.findChild<QTextDocument*>();
  if (document == nullptr) {
    label.setContentsMargins(0, room, 0, room);
    return;
  }
  label.setContentsMargins({});
  const int padding = std::max(room, least);
  PadDocument(*document, padding);
  // A new text is a new document.
  QObject::disconnect(document, &QTextDocument::contentsChanged, &label, nullptr);
  QObject::connect(document, &QTextDocument::contentsChanged, &label,
                   [document, padding] { PadDocument(*document, padding); });
  label.updateGeometry();
}

void MakeSelectable(QLabel& label, Qt::TextInteractionFlags flags) {
  // Only a label with a text makes a document of it, and keeps it for the texts that follow.
  const QString text = label.text();
  label.setText(text + u' ');
  label.setTextInteractionFlags(flags);
  label.setText(text);
  LeaveRoomForLetters(label);
}

}  // namespace kartocheck
