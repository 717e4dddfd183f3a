#include "ui/terminal_access_frame.h"

#include <QHBoxLayout>

#include "ui/plain_label.h"
#include "ui/status_lamp.h"

namespace kartocheck {

namespace {

constexpr std::array<QStringView, LampCount> LampTexts{u"Kartenzugriff", u"MKT-Zugriff"};

}  // namespace

TerminalAccessFrame::TerminalAccessFrame(QWidget* parent)
    : QGroupBox(QStringLiteral("MKT Status"), parent) {
  setObjectName(QStringLiteral("Fram_MKTStatus"));
  auto* layout = new QHBoxLayout(this);
  for (int lamp = 0; lamp < static_cast<int>(Shap_Lampe.size()); ++lamp) {
    const auto index = static_cast<std::size_t>(lamp);
    const QString text = LampTexts.at(index).toString();
    Shap_Lampe.at(index) = new StatusLamp(MemberName(u"Shap_Lampe", lamp), text, this);
    if (lamp > 0) layout->addSpacing(layout->spacing());
    layout->addWidget(Shap_Lampe.at(index));
    QLabel* label = PlainLabel(MemberName(u"Labe_Lampe", lamp), text, this);
    label->setBuddy(Shap_Lampe.at(index));
    layout->addWidget(label);
  }
}

void TerminalAccessFrame::SetLamp(Lamp lamp, LampState state) {
  Shap_Lampe.at(static_cast<std::size_t>(lamp))->SetState(state);
}

}  // namespace kartocheck
