#include "ui/form_info.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/content_area.h"
#include "ui/picture.h"
#include "ui/plain_label.h"
#include "ui/screen_room.h"
#include "ui/text_label.h"

namespace kartocheck {

namespace {

// Size of the program's name, relative to the window's font.
constexpr double NameScale = 1.6;
// Widest line of a fact, in characters; a path may be longer.
constexpr int FactCharacters = 40;

QLabel* NameLabel(QWidget* parent) {
  QLabel* label = PlainLabel(QStringLiteral("Labl_Programm"), QStringLiteral("KartoCheck"), parent);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * NameScale);
  font.setBold(true);
  label->setFont(font);
  return label;
}

QLabel* FactLabel(const QString& name, const QString& text, QWidget* parent) {
  QLabel* label = PlainLabel(name, text, parent);
  MakeSelectable(*label, Qt::TextSelectableByMouse);
  label->setWordWrap(true);
  label->setMinimumWidth(label->fontMetrics().averageCharWidth() * FactCharacters);
  return label;
}

}  // namespace

Form_Info::Form_Info(const ProgramFacts& facts, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("Form_Info"));
  setWindowTitle(QStringLiteral("Info zu KartoCheck"));
  setWindowIcon(PictureIcon(u"kartocheck"));

  auto* frame = new QGroupBox(this);
  frame->setObjectName(QStringLiteral("Frame1"));
  auto* picture = new QLabel(frame);
  picture->setObjectName(QStringLiteral("Imag_Produkt"));
  picture->setPixmap(PicturePixmap(u"product"));
  picture->setAccessibleName(QStringLiteral("Chipkartenterminal mit Versichertenkarte"));

  auto* factRows = new QFormLayout;
  const std::array<std::tuple<QStringView, QStringView, QString>, 3> rows{{
      {u"Labl_Version", u"Version:", facts.version},
      {u"Labl_Bibliothek", u"CT-API-Bibliothek:", facts.library},
      {u"Labl_System", u"Betriebssystem:", facts.system},
  }};
  for (const auto& [name, caption, text] : rows) {
    if (text.isEmpty()) continue;
    factRows->addRow(caption.toString(), FactLabel(name.toString(), text, frame));
  }

  auto* frameLayout = new QVBoxLayout(frame);
  frameLayout->addWidget(picture, 0, Qt::AlignHCenter);
  frameLayout->addWidget(NameLabel(frame), 0, Qt::AlignHCenter);
  QLabel* purpose = PlainLabel(QStringLiteral("Labl_Zweck"),
                               QStringLiteral("Prüft Chipkartenterminals und liest zur Probe\n"
                                              "die Daten von Versichertenkarten."),
                               frame);
  purpose->setAlignment(Qt::AlignCenter);
  frameLayout->addWidget(purpose, 0, Qt::AlignHCenter);
  frameLayout->addLayout(factRows);
  frameLayout->addStretch();

  auto* button = new QPushButton(QStringLiteral("OK"), this);
  button->setObjectName(QStringLiteral("CmdB_1Form_Info"));
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

}  // namespace kartocheck
