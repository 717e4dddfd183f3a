#include "ui/scan_result_line.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/accessible_roles.h"
#include "ui/picture.h"
#include "ui/plain_label.h"

namespace kartocheck {

namespace {

// What stands before each gap.
constexpr QStringView BeforeNumber = u"An COM";
constexpr QStringView BeforeKey = u"Mit";

// Height of a row and of the key in it, relative to the height of a line of text.
constexpr double RowScale = 1.5;
constexpr double KeyScale = 1.25;

// Where the blanks behind `before` stand in a line of text, from its left edge; empty where the
// text has no such place.
struct Gap {
  int left = 0;
  int width = 0;
};

Gap GapBehind(QStringView before, const QString& text, const QFontMetrics& metrics) {
  const qsizetype found = text.indexOf(before);
  if (found < 0) return {};
  const qsizetype start = found + before.size();
  qsizetype end = start;
  while (end < text.size() && text.at(end) == u' ') ++end;
  const int left = metrics.horizontalAdvance(text.first(start));
  return {left, metrics.horizontalAdvance(text.first(end)) - left};
}

}  // namespace

ScanResultLine::ScanResultLine(int row, QWidget* parent)
    : QWidget(parent),
      Labe_DatenInfo1(PlainLabel(MemberName(u"Labe_DatenInfo1", row), QString(), this)),
      Labe_DatenInfo2(PlainLabel(MemberName(u"Labe_DatenInfo2", row), QString(), this)),
      Imag_DatenInfo1(new QLabel(this)) {
  InstallAccessibleRoles();
  Imag_DatenInfo1->setObjectName(MemberName(u"Imag_DatenInfo1", row));
  Imag_DatenInfo1->setScaledContents(true);
  Imag_DatenInfo1->setPixmap(PicturePixmap(u"key"));
  Imag_DatenInfo1->hide();
  Labe_DatenInfo2->setAlignment(Qt::AlignCenter);
  QFont bold = Labe_DatenInfo2->font();
  bold.setBold(true);
  Labe_DatenInfo2->setFont(bold);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(Labe_DatenInfo1);
}

void ScanResultLine::ShowRow(const ScanResultRow& row) {
  Labe_DatenInfo1->setText(row.text);
  Labe_DatenInfo1->setAlignment(row.isCentered ? Qt::AlignCenter
                                               : Qt::AlignLeft | Qt::AlignVCenter);
  Labe_DatenInfo2->setText(row.number);
  Imag_DatenInfo1->setVisible(row.showsKey);
  // The gaps are read out as what lies over them.
  QString spoken = row.text;
  spoken.replace(BeforeNumber.toString() + u' ', BeforeNumber + u' ' + row.number + u' ');
  if (row.showsKey) {
    spoken.replace(BeforeKey.toString() + u' ', BeforeKey + QStringLiteral(" der grünen "));
  }
  setAccessibleName(spoken.simplified());
  PlaceOverGaps();
}

QSize ScanResultLine::sizeHint() const {
  return {Labe_DatenInfo1->sizeHint().width(), static_cast<int>(fontMetrics().height() * RowScale)};
}

void ScanResultLine::PlaceOverGaps() {
  const QString text = Labe_DatenInfo1->text();
  const QFontMetrics metrics = Labe_DatenInfo1->fontMetrics();
  const Gap number = GapBehind(BeforeNumber, text, metrics);
  Labe_DatenInfo2->setGeometry(number.left, 0, number.width, height());

  const Gap key = GapBehind(BeforeKey, text, metrics);
  const QSize size = Imag_DatenInfo1->pixmap().deviceIndependentSize().toSize().scaled(
      key.width, static_cast<int>(metrics.height() * KeyScale), Qt::KeepAspectRatio);
  Imag_DatenInfo1->setGeometry(key.left + (key.width - size.width()) / 2,
                               (height() - size.height()) / 2, size.width(), size.height());
}

void ScanResultLine::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceOverGaps();
}

void ScanResultLine::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) PlaceOverGaps();
}

}  // namespace kartocheck
