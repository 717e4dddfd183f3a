#include "ui/form_daten_info.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/content_area.h"
#include "ui/picture.h"
#include "ui/plain_label.h"
#include "ui/scan_result_line.h"
#include "ui/screen_room.h"

namespace kartocheck {

namespace {

// The window is as wide as its longest text, and at least as many characters.
constexpr int LeastCharacters = 60;

}  // namespace

Form_DatenInfo::Form_DatenInfo(const ScanResult& result, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("Form_DatenInfo"));
  setWindowTitle(QStringLiteral("KartoCheck Ergebnis"));
  setWindowIcon(PictureIcon(u"kartocheck"));

  auto* frame = new QGroupBox(this);
  frame->setObjectName(QStringLiteral("Frame1"));
  frame->setMinimumWidth(fontMetrics().averageCharWidth() * LeastCharacters);
  auto* rows = new QVBoxLayout(frame);
  for (int row = 0; row < ScanResultRows; ++row) {
    auto* line = new ScanResultLine(row, frame);
    rows->addWidget(line);
    lines_.at(static_cast<std::size_t>(row)) = line;
  }
  hints_ = PlainLabel(QStringLiteral("Labe_Hinweis"), QString(), frame);
  hints_->setWordWrap(true);
  rows->addWidget(hints_);
  summary_ = PlainLabel(MemberName(u"Labe_DatenInfo1", ScanResultRows), QString(), frame);
  rows->addWidget(summary_);
  rows->addStretch();
  Fill(result);

  auto* button = new QPushButton(QStringLiteral("Schließen"), this);
  button->setObjectName(QStringLiteral("Command1"));
  button->setDefault(true);
  connect(button, &QPushButton::clicked, this, &QWidget::close);

  auto* layout = new QVBoxLayout(this);
  auto* area = Scrolling(frame, this);
  area->ScrollByKeysOf(*this);
  layout->addWidget(area, 1);
  layout->addWidget(button, 0, Qt::AlignHCenter);
  button->setFocus();
  FitToScreen(*this);
}

void Form_DatenInfo::Fill(const ScanResult& result) {
  for (std::size_t row = 0; row < lines_.size(); ++row) lines_[row]->ShowRow(result.rows[row]);
  QStringList hints;
  for (const ScanResultRow& row : result.rows) {
    if (!row.hint.isEmpty()) hints.append(u"COM " + row.number + u": " + row.hint);
  }
  hints_->setText(hints.join(u'\n'));
  hints_->setVisible(!hints.isEmpty());
  summary_->setText(QString(result.summary).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

}  // namespace kartocheck
