#include "ui/notice_frames.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

#include "text/status_texts.h"
#include "ui/picture.h"
#include "ui/plain_label.h"

namespace kartocheck {

namespace {

constexpr std::array<QStringView, 4> WaitTexts{
    u"Bitte warten !",
    u"Programm prüft die serielle(n) Schnittstelle(n)",
    u"auf Vorhandensein eines",
    u"multifunktionalen Karten-Terminals (MKT).",
};

// Size of a heading, relative to the window's font.
constexpr double HeadingScale = 1.5;

void MakeHeading(QLabel* label) {
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * HeadingScale);
  font.setBold(true);
  label->setFont(font);
}

void AddCentred(QVBoxLayout* layout, QLabel* label) {
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  layout->addWidget(label);
}

QLabel* PictureLabel(QStringView picture, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setPixmap(PicturePixmap(picture));
  return label;
}

}  // namespace

QPushButton* GiveUpButton(const QString& name, QWidget* parent) {
  auto* button = new QPushButton(QStringLiteral("Warten abbrechen (Esc)"), parent);
  button->setObjectName(name);
  button->setToolTip(
      QStringLiteral("Das Terminal hat noch nicht geantwortet. Nicht länger darauf warten."));
  button->setAutoDefault(false);
  button->hide();
  return button;
}

WaitFrame::WaitFrame(QWidget* parent) : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  auto* layout = new QVBoxLayout(this);
  layout->addStretch();
  AddCentred(layout, PictureLabel(u"full_scan", this));
  layout->addSpacing(layout->spacing());
  for (int line = 0; line < static_cast<int>(WaitTexts.size()); ++line) {
    QLabel* label = PlainLabel(MemberName(u"Labe_Warten", line),
                               WaitTexts.at(static_cast<std::size_t>(line)).toString(), this);
    AddCentred(layout, label);
    if (line == 0) {
      MakeHeading(label);
      layout->addSpacing(layout->spacing());
    }
  }
  layout->addStretch();
  searchHint_ =
      PlainLabel(QStringLiteral("Labe_WartenHinweis"),
                 QStringLiteral("Esc beendet die Suche; was gefunden ist, bleibt."), this);
  AddCentred(layout, searchHint_);
  endSearch_ = new QPushButton(QStringLiteral("Suche beenden (Esc)"), this);
  endSearch_->setObjectName(QStringLiteral("Butt_SucheBeenden"));
  AddButton(endSearch_);
  giveUp_ = GiveUpButton(QStringLiteral("Butt_WartenAbbrechen"), this);
  AddButton(giveUp_);
  OfferToEndSearch(false);
}

void WaitFrame::AddButton(QPushButton* button) {
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, &WaitFrame::EndRequested);
  // Nothing moves when it appears.
  QSizePolicy policy = button->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  button->setSizePolicy(policy);
  static_cast<QVBoxLayout*>(layout())->addWidget(button, 0, Qt::AlignCenter);
}

void WaitFrame::OfferToEndSearch(bool offered) {
  searchHint_->setVisible(offered);
  endSearch_->setVisible(offered);
}

void WaitFrame::OfferToGiveUp(bool offered) {
  giveUp_->setVisible(offered);
}

DialogCheckFrame::DialogCheckFrame(QWidget* parent) : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  auto* layout = new QVBoxLayout(this);
  QLabel* heading =
      PlainLabel(QStringLiteral("Labe_Dialog"), status_text::DialogCheck.toString(), this);
  MakeHeading(heading);
  layout->addStretch();
  AddCentred(layout, PictureLabel(u"diagnosis", this));
  layout->addSpacing(layout->spacing());
  AddCentred(layout, heading);
  port_ = PlainLabel(QStringLiteral("Labe_DialogPort"), QString(), this);
  AddCentred(layout, port_);
  step_ = PlainLabel(QStringLiteral("Labe_DialogSchritt"), QString(), this);
  AddCentred(layout, step_);
  layout->addStretch();
}

void DialogCheckFrame::ShowPort(const QString& name) {
  port_->setText(name);
  step_->clear();
}

void DialogCheckFrame::ShowStep(const QString& step) {
  step_->setText(step);
}

}  // namespace kartocheck
